#include "model/table_text.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

#include "model/text_stream.h"
#include "model/value_arrays.h"

namespace {

bool StartsCharacter(char c) { return (c & 0xC0) != 0x80; }

int Columns(std::string_view text) {
    int columns = 0;
    for (const char c : text)
        if (StartsCharacter(c)) columns += static_cast<unsigned char>(c) < 0x80 ? 1 : 2;
    return columns;
}

// As many whole characters as fit.
std::string_view Fitting(std::string_view text, int width) {
    std::size_t end = 0;
    for (std::size_t at = 0; at < text.size();) {
        do ++at;
        while (at < text.size() && !StartsCharacter(text[at]));
        if (Columns(text.substr(0, at)) > width) break;
        end = at;
    }
    return text.substr(0, end);
}

std::string Spaces(int count) { return std::string(static_cast<std::size_t>(std::max(count, 0)), ' '); }

}  // namespace

int GetTextColumns(const CString& text) { return Columns(text.View()); }

CString GetCenteredWord(const CString& word, int width) {
    const std::string_view shown = Fitting(word.View(), width);
    const int rest = std::max(width - Columns(shown), 0);
    return Spaces(rest / 2) + std::string(shown) + Spaces(rest - rest / 2);
}

CString GetCenteredTextLine(const CString& line, int width) {
    return Spaces((width - Columns(line.View())) / 2) + line.Std();
}

CString GetTabbedText(const CString& text, int width) {
    std::string out;
    std::string_view rest = text.View();
    for (std::size_t tab; (tab = rest.find('\t')) != rest.npos; rest.remove_prefix(tab + 1)) {
        const std::string_view field = rest.substr(0, tab);
        out.append(field).append(Spaces(std::max(width - Columns(field), 1)));
    }
    return out.append(rest);
}

// --- exercisers -------------------------------------------------------------------------------------------

namespace {

// What `use` makes of a temporary file that holds `text`; 0 if there is none to be had.
template <class Use>
int WithFile(std::string_view text, Use use) {
    std::FILE* f = std::tmpfile();
    if (!f) return 0;
    std::fwrite(text.data(), 1, text.size(), f);
    std::rewind(f);
    const bool good = use(f);
    std::fclose(f);
    return good;
}

}  // namespace

int TestTabbedText() { return GetTabbedText("轴线\tab\t1", 6) == "轴线  ab    1"; }

int test_get_word() {
    return WithFile("ab,c\n", [](std::FILE* f) {
        char word[9];
        const auto next = [&] { return std::string_view(get_word(f, ',', word, 8, 1)); };
        return next() == "ab" && next() == "c" && std::fgetc(f) == '\n';
    });
}

int Test_WriteFloatArray() {
    return WithFile("", [](std::FILE* f) {
        CArray<float, float> a;
        a.Add(1.5f);
        a.Add(-2.0f);
        WriteFloatArray(&a, f, 0, ',', 1);
        std::rewind(f);
        char line[101];
        return get_line(f, line, 100) && std::string_view(line) == "2,1.50000,-2.00000";
    });
}

int Test_ReadFloatArray() {
    return WithFile("2,1.50000,-2.00000\n", [](std::FILE* f) {
        CArray<float, float> a;
        return ReadFloatArray(&a, f, ',', 0) == 2 && a[0] == 1.5f && a[1] == -2.0f;
    });
}
