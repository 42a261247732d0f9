#include "model/value_arrays.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string>
#include <vector>

#include "geometry/fpoint.h"
#include "model/exchange_sort.h"
#include "model/text_stream.h"
#include "platform/number_text.h"

namespace {

constexpr int kWordBytes = 100;

template <class T>
int KeyValues(const CArrayOf<T>& a, T& min, T& max, T& mean) {
    if (a.IsEmpty()) return 0;
    min = *std::min_element(a.begin(), a.end());
    max = *std::max_element(a.begin(), a.end());
    mean = std::accumulate(a.begin(), a.end(), T{}) / static_cast<T>(a.GetSize());
    return 1;
}

template <class T>
void SortedOnce(CArrayOf<T>& a) {
    const auto numbers = std::stable_partition(a.begin(), a.end(), [](T v) { return v == v; });
    std::stable_sort(a.begin(), numbers);
    const auto kept = std::unique(a.begin(), numbers);
    const auto end = std::move(numbers, a.end(), kept);
    a.SetSize(static_cast<int>(end - a.begin()));
}

}  // namespace

void CopyByteArray(const CByteArray& from, CByteArray& to) { to.Copy(from); }
void CopyDwordArray(const CDWordArray& from, CDWordArray& to) { to.Copy(from); }
void CopyIntArray(const CArray<int, int>& from, CArray<int, int>& to) { to.Copy(from); }
void CopyFloatArray(const CArray<float, float>& from, CArray<float, float>& to) { to.Copy(from); }
void CopyFPointArray(const CArray<CFPoint, CFPoint>& from, CArray<CFPoint, CFPoint>& to) { to.Copy(from); }
void CopyDoubleArray(const CArray<double, double>& from, CArray<double, double>& to) { to.Copy(from); }
void CopyStringArray(const CStringArray& from, CStringArray& to) { to.Copy(from); }

void ResetFloatArray(CArray<float, float>* a, int size, float value) {
    a->SetSize(size);
    std::fill(a->begin(), a->end(), value);
}

int get_array_key_value(const CArray<float, float>& a, float& min, float& max, float& mean) {
    return KeyValues(a, min, max, mean);
}
int get_array_key_value(const CArray<double, double>& a, double& min, double& max, double& mean) {
    return KeyValues(a, min, max, mean);
}

void DeleteDuplicateValue(CArray<int, int>& a) { SortedOnce(a); }
void DeleteDuplicateValue(CArray<float, float>& a) { SortedOnce(a); }
void DeleteDuplicateValue(CArray<double, double>& a) { SortedOnce(a); }

void SortFloatPointArray(CArray<CFPoint, CFPoint>& points, char axis) {
    const bool byX = axis == 'x' || axis == 'X';
    std::vector<float> keys;
    keys.reserve(static_cast<std::size_t>(points.GetSize()));
    for (const CFPoint& p : points) keys.push_back(byX ? p.x : p.y);
    CArray<CFPoint, CFPoint> sorted;
    sorted.Reserve(points.GetSize());
    for (const int i : ExchangeSortOrder(keys)) sorted.Add(points[i]);
    points.Swap(sorted);
}

void WriteFloatArray(const CArray<float, float>* a, std::FILE* f, int endSep, char sep, int newline) {
    std::string text = std::to_string(a->GetSize()) + ",";
    for (int i = 0; i < a->GetSize(); ++i) {
        if (i > 0) text += sep;
        text += FixedReal(a->GetAt(i), 5);
    }
    if (endSep) text += sep;
    if (newline) text += '\n';
    std::fwrite(text.data(), 1, text.size(), f);
}

int ReadFloatArray(CArray<float, float>* a, std::FILE* f, char sep, int keepNewline) {
    char word[kWordBytes + 1];
    const int count = LeadingInt(get_word(f, sep, word, kWordBytes, 0));
    a->RemoveAll();
    while (a->GetSize() < count) {
        const long before = std::ftell(f);
        get_word(f, sep, word, kWordBytes, keepNewline);
        if (word[0] == 0 && (std::feof(f) || std::ferror(f))) break;
        a->Add(static_cast<float>(LeadingReal(word)));
        // A word that no separator ended stands before a kept newline. Whatever the count promises, all
        // further words would be empty.
        const auto length = static_cast<long>(std::strlen(word));
        if (keepNewline && length < kWordBytes && std::ftell(f) == before + length) break;
    }
    return a->GetSize();
}
