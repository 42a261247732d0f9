// The containers and strings against the standard ones.
#include "platform/containers.h"

#include <gtest/gtest.h>

#include <list>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "platform/gbk.h"
#include "platform/string.h"

namespace {

class Dice {
public:
    explicit Dice(unsigned seed) : m_rng(seed) {}
    int operator()(int n) { return static_cast<int>(m_rng() % static_cast<unsigned>(n)); }

private:
    std::mt19937 m_rng;
};

// A key whose hash collides for every eighth, so that runs of the table grow long.
struct Clumsy {
    int v = 0;
    friend bool operator==(const Clumsy& a, const Clumsy& b) { return a.v == b.v; }
};
std::uint64_t HashKey(const Clumsy& key) { return static_cast<std::uint64_t>(key.v % 8); }

}  // namespace

TEST(Containers, ArrayBehavesAsAVector) {
    Dice dice(11);
    for (int round = 0; round < 300; ++round) {
        CArray<int, int> a;
        std::vector<int> v;
        for (int step = 0; step < 60; ++step) {
            const int value = dice(1000), size = static_cast<int>(v.size()), at = dice(size + 1);
            switch (dice(8)) {
                case 0:
                    EXPECT_EQ(a.Add(value), size);
                    v.push_back(value);
                    break;
                case 1:
                    a.InsertAt(at, value, 2);
                    v.insert(v.begin() + at, 2, value);
                    break;
                case 2:
                    if (at == size) break;
                    a.RemoveAt(at);
                    v.erase(v.begin() + at);
                    break;
                case 3:
                    a.SetSize(at);
                    v.resize(static_cast<std::size_t>(at));
                    break;
                case 4:
                    a.SetAtGrow(at + 2, value);
                    if (at + 3 > size) v.resize(static_cast<std::size_t>(at) + 3);
                    v[static_cast<std::size_t>(at) + 2] = value;
                    break;
                case 5:  // an array appended to itself; seldom, since it doubles
                    if (size > 20) break;
                    EXPECT_EQ(a.Append(a), size);
                    v.insert(v.end(), v.begin(), v.begin() + size);
                    break;
                case 6: {
                    CArray<int, int> other;
                    other.Copy(a);
                    a.InsertAt(at, &other);
                    const std::vector<int> same = v;
                    v.insert(v.begin() + at, same.begin(), same.end());
                    if (size > 20) {
                        a.RemoveAt(0, size);
                        v.erase(v.begin(), v.begin() + size);
                    }
                    break;
                }
                default:
                    if (at < size) {
                        a[at] = value;
                        v[static_cast<std::size_t>(at)] = value;
                    }
            }
            ASSERT_EQ(std::vector<int>(a.begin(), a.end()), v) << "round " << round << ", step " << step;
        }
    }
}

TEST(Containers, ListPositionsAreStableHandles) {
    Dice dice(12);
    for (int round = 0; round < 300; ++round) {
        CList<int, int> list;
        std::list<int> model;
        std::vector<std::pair<POSITION, std::list<int>::iterator>> handles;
        for (int step = 0; step < 80; ++step) {
            const int value = dice(50);
            const std::size_t which =
                handles.empty() ? 0 : static_cast<std::size_t>(dice(static_cast<int>(handles.size())));
            const bool any = !handles.empty();
            switch (dice(7)) {
                case 0:
                    model.push_back(value);
                    handles.push_back({list.AddTail(value), std::prev(model.end())});
                    break;
                case 1:
                    model.push_front(value);
                    handles.push_back({list.AddHead(value), model.begin()});
                    break;
                case 2:
                    if (!any) break;
                    handles.push_back({list.InsertAfter(handles[which].first, value),
                                       model.insert(std::next(handles[which].second), value)});
                    break;
                case 3:
                    if (!any) break;
                    handles.push_back({list.InsertBefore(handles[which].first, value),
                                       model.insert(handles[which].second, value)});
                    break;
                case 4:
                case 5:
                    if (!any) break;
                    list.RemoveAt(handles[which].first);
                    model.erase(handles[which].second);
                    handles.erase(handles.begin() + static_cast<std::ptrdiff_t>(which));
                    break;
                default:
                    if (any) {
                        list.SetAt(handles[which].first, value);
                        *handles[which].second = value;
                    }
            }
            std::vector<int> forth, back;
            for (POSITION p = list.GetHeadPosition(); p;) forth.push_back(list.GetNext(p));
            for (POSITION p = list.GetTailPosition(); p;) back.insert(back.begin(), list.GetPrev(p));
            ASSERT_EQ(forth, std::vector<int>(model.begin(), model.end()))
                << "round " << round << ", step " << step;
            ASSERT_EQ(back, forth);
            ASSERT_EQ(list.GetCount(), static_cast<int>(model.size()));
            for (const auto& [position, it] : handles) ASSERT_EQ(list.GetAt(position), *it);
            const auto found = std::find(model.begin(), model.end(), value);
            const POSITION position = list.Find(value);
            ASSERT_EQ(position != nullptr, found != model.end());
            if (position) {
                ASSERT_EQ(list.FindIndex(static_cast<int>(std::distance(model.begin(), found))), position);
            }
        }
        list.AddTail(list);
        EXPECT_EQ(list.GetCount(), 2 * static_cast<int>(model.size()));
    }
}

// The oracle: a vector of pairs in order of entering.
template <class Key>
void CompareMaps(unsigned seed, int keys) {
    Dice dice(seed);
    for (int round = 0; round < 60; ++round) {
        CMap<Key, Key, int, int> map;
        std::vector<std::pair<int, int>> model;
        const auto find = [&model](int key) {
            return std::find_if(model.begin(), model.end(), [key](const auto& e) { return e.first == key; });
        };
        for (int step = 0; step < 600; ++step) {
            const int k = dice(keys), value = dice(1000);
            const Key key{k};
            const auto at = find(k);
            switch (dice(6)) {
                case 0:
                case 1:
                    map.SetAt(key, value);
                    if (at == model.end()) model.push_back({k, value});
                    else at->second = value;
                    break;
                case 2:
                    ASSERT_EQ(map.Insert(key, value), at == model.end());
                    if (at == model.end()) model.push_back({k, value});
                    break;
                case 3:
                case 4:
                    ASSERT_EQ(map.RemoveKey(key), at != model.end());
                    if (at != model.end()) model.erase(at);
                    break;
                default: {  // a walk that removes some of what it is handed
                    if (dice(20) != 0) break;
                    std::vector<std::pair<int, int>> left;
                    for (const auto& e : model)
                        if (e.second % 3 != 0) left.push_back(e);
                    for (POSITION p = map.GetStartPosition(); p;) {
                        Key walked{};
                        int v = 0;
                        map.GetNextAssoc(p, walked, v);
                        if (v % 3 == 0) {
                            ASSERT_TRUE(map.RemoveKey(walked));
                        }
                    }
                    model = left;
                }
            }
            std::size_t i = 0;
            map.ForEach([&](const Key& walked, int v) {
                ASSERT_LT(i, model.size());
                ASSERT_TRUE(walked == (Key{model[i].first}));
                ASSERT_EQ(v, model[i++].second);
            });
            ASSERT_EQ(i, model.size()) << "round " << round << ", step " << step;
            ASSERT_EQ(map.GetCount(), static_cast<int>(i));
            int v = -1;
            const auto now = find(k);
            ASSERT_EQ(map.Lookup(key, v), now != model.end());
            if (now != model.end()) {
                ASSERT_EQ(v, now->second);
            }
        }
    }
}
TEST(Containers, MapIsWalkedInOrderOfEntering) {
    CompareMaps<int>(13, 12);     // within and around the plain array
    CompareMaps<int>(14, 200);    // a table
    CompareMaps<Clumsy>(15, 60);  // long runs in the table
}

TEST(Strings, CutAtWholeCharacters) {
    const CString text = "轴a网é";  // 3 + 1 + 3 + 2 bytes
    const struct {
        const char* name;
        CString got;
        const char* wanted;
    } rows[] = {
        {"left at a border", text.Left(4), "轴a"},
        {"left within a character moves back", text.Left(6), "轴a"},
        {"left within the first gives nothing", text.Left(2), ""},
        {"left of more than there is", text.Left(99), "轴a网é"},
        {"left of a negative count", text.Left(-1), ""},
        {"right at a border", text.Right(2), "é"},
        {"mid within a character begins in front of it", text.Mid(5), "网é"},
        {"mid with both ends within", text.Mid(1, 4), "轴a"},
        {"mid behind the end", text.Mid(99), ""},
        {"mid from a negative place", text.Mid(-5, 3), "轴"},
        {"stray continuation bytes are cut as bytes", CString("\x80\x80\x80\x80\x80\x80").Left(5),
         "\x80\x80\x80\x80\x80"},
    };
    for (const auto& row : rows) EXPECT_EQ(row.got, row.wanted) << row.name;
}

TEST(Strings, Editing) {
    CString s = "  ab\t\n";
    EXPECT_EQ(CString(s).Trim(), "ab");
    EXPECT_EQ(CString(s).TrimLeft(), "ab\t\n");
    EXPECT_EQ(CString("xxabx").TrimRight("x"), "xxab");
    s = "a.b.c";
    EXPECT_EQ(s.Replace(".", ".."), 2);
    EXPECT_EQ(s, "a..b..c");
    EXPECT_EQ(s.Replace("", "x"), 0);
    EXPECT_EQ(s.Remove('.'), 4);
    EXPECT_EQ(s.Insert(99, "d"), 4);
    EXPECT_EQ(s.Delete(1, 2), 2);
    EXPECT_EQ(s, "ad");
    EXPECT_EQ(s.Find('d'), 1);
    EXPECT_EQ(s.Find("d", 2), -1);
    EXPECT_EQ(CString("ÄbC").MakeUpper(), "ÄBC");
    EXPECT_EQ(CString("Plan.DXF").CompareNoCase("pLAN.dxf"), 0);
    s.Format("%s-%05.1f", "轴", 2.25);
    EXPECT_EQ(s, "轴-002.2");
    s.AppendFormat("%0*d", 600, 7);
    EXPECT_EQ(s.GetLength(), 9 + 600);
}

TEST(Gbk, EveryCharacterComesBack) {
    int characters = 0;
    for (int lead = 0x81; lead <= 0xFE; ++lead)
        for (int trail = 0x40; trail <= 0xFE; ++trail) {
            const std::string gbk{static_cast<char>(lead), static_cast<char>(trail)};
            bool there = false, back = false;
            const std::string text = GbkToUtf8(gbk, &there);
            if (!there) continue;
            ++characters;
            ASSERT_EQ(Utf8ToGbk(text, &back), gbk) << std::hex << lead << trail;
            ASSERT_TRUE(back);
        }
    EXPECT_GT(characters, 21000);  // the page has 21886 and some
}

TEST(Gbk, WhatDoesNotConvertIsToldAndReplaced) {
    const struct {
        const char* name;
        std::string got;
        bool lossless;
        const char* wanted;
    } rows[] = {
        {"a byte that begins nothing",
         "a\xFF"
         "b",
         false, "a?b"},
        {"a pair cut at the end", "\xD6\xE1\xD6", false, "轴?"},
        {"plain", "ab", true, "ab"},
        {"empty", "", true, ""},
    };
    for (const auto& row : rows) {
        bool lossless = !row.lossless;
        EXPECT_EQ(GbkToUtf8(row.got, &lossless), row.wanted) << row.name;
        EXPECT_EQ(lossless, row.lossless) << row.name;
    }
    bool lossless = true;
    EXPECT_EQ(Utf8ToGbk("轴\xF0\x9F\x98\x80z", &lossless), "\xD6\xE1?z");  // no emoji in GBK
    EXPECT_FALSE(lossless);
    EXPECT_EQ(Utf8ToGbk("\xE8\xBD", &lossless).substr(0, 1), "?");  // a character cut short
    EXPECT_FALSE(lossless);
    EXPECT_EQ(GbkToUtf8(Utf8ToGbk("命令:", &lossless)), "命令:");
    EXPECT_TRUE(lossless);
}
