#include "model/text_stream.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/gbk.h"
#include "platform/number_text.h"

namespace {

constexpr int kLineBytes = 500;  // longest piece in which a line is searched
constexpr const char* kWhite = " \t\n\r";

bool Stops(int c) { return c == EOF || c == 0xFF; }

enum class Stop { End, Full, Separator, Newline };

// Bytes of a word into `out`; says what ended it. The stopping byte is consumed. No separator: -1.
Stop ReadBytes(std::FILE* f, int sep, char* out, int max, int& count) {
    count = 0;
    Stop stop = Stop::Full;
    while (count < max) {
        const int c = std::fgetc(f);
        if (Stops(c)) {
            stop = Stop::End;
        } else if (c == '\n') {
            stop = Stop::Newline;
        } else if (c == sep) {
            stop = Stop::Separator;
        } else {
            out[count++] = static_cast<char>(c);
            continue;
        }
        break;
    }
    out[count] = 0;
    return stop;
}

// The bytes sought in a file; text that GBK lacks is sought as it stands.
std::string SoughtBytes(const char* text) {
    bool lossless = false;
    std::string gbk = Utf8ToGbk(text ? text : "", &lossless);
    return lossless ? gbk : text;
}

// Goes on to the line that holds the bytes and gives its start; -1, the stream at its end, if there is none.
// A byte 0xFF ends a line and not the search.
long SeekLine(std::FILE* f, const std::string& sought) {
    char line[kLineBytes + 1];
    for (;;) {
        const long start = std::ftell(f);
        int count = 0;
        ReadBytes(f, -1, line, kLineBytes, count);
        const bool last = std::feof(f) || std::ferror(f);
        if (count == 0 && last) return -1;
        if (std::string_view(line, static_cast<std::size_t>(count)).find(sought) != std::string_view::npos)
            return start;
        if (last) return -1;
    }
}

const char* SkipWhite(const char* s) { return s + std::strspn(s, kWhite); }

}  // namespace

char* get_word(std::FILE* f, char sep, char* out, int max, int keepNewline) {
    int count = 0;
    const Stop stop = ReadBytes(f, static_cast<unsigned char>(sep), out, max, count);
    if (stop == Stop::Newline && keepNewline) std::fseek(f, -1, SEEK_CUR);
    return out;
}

char* get_line(std::FILE* f, char* out, int max) {
    int count = 0;
    const Stop stop = ReadBytes(f, -1, out, max, count);
    return count == 0 && stop != Stop::Newline ? nullptr : out;
}

char* get_line_back_ward(std::FILE* f, char* out, int max) {
    long at = std::ftell(f);
    int count = 0;
    bool newline = false;
    while (count < max && at > 0) {
        // Stepping back byte by byte, but through the file in pieces.
        char piece[256];
        const long n = std::min<long>({at, max - count, static_cast<long>(sizeof piece)});
        std::fseek(f, at - n, SEEK_SET);
        const auto read = static_cast<long>(std::fread(piece, 1, static_cast<std::size_t>(n), f));
        if (read != n) break;
        long i = n;
        while (i > 0 && piece[i - 1] != '\n' && piece[i - 1] != '\xFF') out[count++] = piece[--i];
        at -= n - i;
        if (i > 0) {  // the stopping byte is stepped over too
            newline = piece[i - 1] == '\n';
            --at;
            break;
        }
    }
    out[count] = 0;
    std::reverse(out, out + count);
    std::fseek(f, std::max(at, 0L), SEEK_SET);
    return count == 0 && !newline ? nullptr : out;
}

char* get_number(const char* s, float& value, const char* seps) {
    if (!s || !*s) return nullptr;
    s = SkipWhite(s);
    double sign = 1;
    if (*s == '-' || *s == '+') sign = *s++ == '-' ? -1 : 1;
    const std::size_t length = std::strspn(s, "0123456789.");
    value = static_cast<float>(sign * LeadingReal({s, length}));
    s += length;
    if (length == 0 && *s) ++s;
    s = SkipWhite(s);
    if (*s && seps && std::strchr(seps, *s)) ++s;
    return const_cast<char*>(SkipWhite(s));  // as strtod: the caller knows whether its text is const
}

int find_text(std::FILE* f, const char* text, int fromStart, int stayOnLine) {
    if (fromStart) std::rewind(f);
    const long start = SeekLine(f, SoughtBytes(text));
    if (start < 0) return 0;
    if (stayOnLine) std::fseek(f, start, SEEK_SET);
    return 1;
}

int FindTextA(std::FILE* f, const char* text, int afterLine) {
    const long before = std::ftell(f);
    const long start = SeekLine(f, SoughtBytes(text));
    if (start < 0) {
        std::fseek(f, before, SEEK_SET);
        return 0;
    }
    if (!afterLine) std::fseek(f, start, SEEK_SET);
    return 1;
}

void fgets_skip_comment(char* buffer, int size, std::FILE* f, const char* marker) {
    const std::string comment = Utf8ToGbk(marker ? marker : "");
    const std::size_t room = static_cast<std::size_t>(std::max(size, 1)) - 1;
    std::string line;  // the buffer keeps its line until another one is found
    for (;;) {
        line.clear();
        int c = std::fgetc(f);
        if (c == EOF || size <= 0) return;
        for (; c != EOF; c = std::fgetc(f)) {
            if (c == '\r') continue;
            if (line.size() == room) {
                std::ungetc(c, f);
                c = 0;  // what ends the line is still to be read
                break;
            }
            line.push_back(static_cast<char>(c));
            if (c == '\n') break;
        }
        if (c == EOF && line.empty()) return;  // returns alone: the end of the file all the same
        if (comment.empty() || !line.starts_with(comment)) break;
        while (c != EOF && c != '\n') c = std::fgetc(f);
    }
    std::memcpy(buffer, line.c_str(), line.size() + 1);
}
