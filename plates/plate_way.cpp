#include "plates/plate_way.h"

#include <algorithm>

void CPlateWay::AddElement(CMianGouJian* plate) {
    if (std::find(m_arrPlate.begin(), m_arrPlate.end(), plate) == m_arrPlate.end()) m_arrPlate.Add(plate);
}

void CPlateWay::RemoveElement(CMianGouJian* plate) {
    for (int i = 0; i < m_arrPlate.GetSize(); ++i) {
        if (m_arrPlate[i] != plate) continue;
        m_arrPlate.RemoveAt(i);
        return;
    }
}
