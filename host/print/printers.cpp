#include "host/print/printers.h"

#include <algorithm>
#include <sstream>

#include "platform/window_system.h"

namespace {

constexpr int kListTime = 4000, kSendTime = 60000;  // milliseconds: printers may be looked for on the network

/// The first word of each line: `lpstat -e` gives names alone, `-a` goes on in the user's language.
std::vector<std::string> FirstWords(const std::string& text) {
    std::vector<std::string> names;
    std::istringstream lines(text);
    for (std::string line, name; std::getline(lines, line);)
        if (std::istringstream(line) >> name && std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    return names;
}

std::string FirstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

}  // namespace

PrinterList FindPrinters(CWindowSystem& system) {
    // Older systems don't know -e, which names printers on the network too.
    for (const char* which : {"-e", "-a"}) {
        const ProcessOutput answer = system.CallProgram({"lpstat", which}, kListTime);
        if (!answer.m_started) return {{}, "系统中没有打印程序 (lpstat)"};
        if (answer.m_timedOut) return {{}, "打印系统没有回应"};
        if (PrinterList list{FirstWords(answer.m_text), {}}; answer.m_status == 0 && !list.names.empty())
            return list;
    }
    return {{}, "系统中没有打印机"};
}

PrintJob SendToPrinter(CWindowSystem& system, const std::string& printer, const std::string& file) {
    const ProcessOutput answer = system.CallProgram({"lp", "-d", printer, file}, kSendTime);
    PrintJob job;
    job.details = FirstLine(answer.m_status == 0 ? answer.m_text : answer.m_errors);
    if (!answer.m_started) job.wrong = "系统中没有打印程序 (lp)";
    else if (answer.m_timedOut) job.wrong = "打印系统没有回应";
    else if (answer.m_status != 0) job.wrong = "打印系统没有接受";
    // "request id is NAME-12 (1 file(s))", around the identity in the user's language
    std::istringstream words(job.details);
    for (std::string word; words >> word && job.wrong.empty();)
        if (word.starts_with(printer + "-")) job.job = word;
    return job;
}
