#include "host/script_reader.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include "host/failure.h"
#include "host/file_output.h"
#include "host/script_line.h"

namespace {

bool IsRegularFile(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

void DropByteOrderMark(std::string& line) {
    if (line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3);
}

}  // namespace

int ReadScript(const ScriptSource& options, const std::function<void(std::string_view)>& run) {
    std::ifstream file;
    const bool fromInput = options.file == "-";
    if (!fromInput) {
        RequireReadable(options.file);
        errno = 0;
        file.open(options.file, std::ios::binary);
        if (!file) throw DataFailure("cannot read " + options.file + ": " + std::strerror(errno));
    }
    std::istream& in = fromInput ? std::cin : file;
    // Whoever talks with us through a pipe waits for each answer.
    const bool answerAtOnce = fromInput && !IsRegularFile(STDIN_FILENO);

    int errors = 0;
    std::string line;
    for (long long number = 1; std::getline(in, line); ++number) {
        if (number == 1) DropByteOrderMark(line);
        try {
            run(line);
        } catch (const ScriptFailure& failure) {
            std::cout.flush();
            std::cerr << "error: line " << number << ": " << failure.message << std::endl;
            ++errors;
            if (!options.keepGoing) return kWrongUsage;
        }
        if (answerAtOnce) std::cout.flush();
    }
    if (in.bad()) throw DataFailure("cannot read " + (fromInput ? "the standard input" : options.file));
    return errors ? kDataUnusable : kDone;
}
