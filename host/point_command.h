// A command that takes points.
#pragma once
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "geometry/fpoint.h"
#include "host/host_data_base.h"
#include "view/dt_work_ex.h"
#include "view/rubber_line.h"

/// Farther out a net can't be drawn: floats step by more than its tolerance there. False for what is no number, too.
inline bool WithinReach(const CFPoint& p) {
    constexpr float kFarthest = 1e9f;  // mm
    return std::fabs(p.x) <= kFarthest && std::fabs(p.y) <= kFarthest;
}

/// A command that takes points one after another, each with its prompt, and does one undoable edit.
class PointCommand : public CDtWorkEx {
public:
    PointCommand(const char* name, std::vector<const char*> prompts, CRubberLine* line)
        : m_prompts(std::move(prompts)) {
        m_strName = name;
        m_strPrompt = m_prompts[0];
        m_first = line;
    }
    ~PointCommand() override { delete m_first; }

    unsigned OnGetObject(OBJECT_HINT hint, void* object, int) override {
        if (hint != OH_POINT) return QS_POINT;
        const CFPoint& point = *static_cast<const CFPoint*>(object);
        if (!WithinReach(point)) {
            AppendPromptText("*点太远, 坐标最大 1000000000, 命令结束*");
            return QS_FINISH;  // the view keeps it as the last point, from which rubber lines start
        }
        m_points.push_back(point);
        if (m_first) SwitchRubberLine(std::exchange(m_first, nullptr), 0);
        return TakePoint();
    }
    unsigned OnQueryState() override {
        Ask();
        return QS_POINT;
    }

protected:
    /// Called with each point; the default waits for as many as there are prompts, and then draws.
    virtual unsigned TakePoint() {
        if (m_points.size() < m_prompts.size()) {
            Ask();
            return QS_POINT;
        }
        Edit([&] { Draw(); });
        return QS_FINISH;
    }
    virtual void Draw() {}
    void Ask() { SetPromptText(m_prompts[std::min(m_points.size(), m_prompts.size() - 1)]); }
    CTvoHostDataBase& Db() { return *static_cast<CTvoHostDataBase*>(m_pDataBase); }
    void AddLine(const CFPoint& a, const CFPoint& b) {
        Db().AddNetLine(a, b, 0, 0);
        if (Db().m_bLineDegenerate) TellTooNear();
    }
    void TellTooNear() { AppendPromptText("*两点太近, 没有生成轴线*"); }
    /// One undo step, plates included.
    template <class F>
    void Edit(F edit) {
        Db().Start();
        Db().DoEdit(edit);
    }

    std::vector<const char*> m_prompts;
    std::vector<CFPoint> m_points;

private:
    CRubberLine* m_first;  // used from the first point on; owned till then
};
