// Printers are asked for and sent to by the programs of the print system: here by scripts that stand in for
// them.
#include "host/print/printers.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>

#include "platform/window_system.h"
#include "tvo_process.h"

namespace {

/// The system without a screen, but with programs.
class ProgramSystem : public CWindowSystem {
public:
    ProcessOutput CallProgram(const std::vector<std::string>& arguments, int milliseconds) override {
        return ReadProcess(arguments, milliseconds);
    }
};

/// The search path holds these programs alone; an empty text: no such program.
class SearchPath {
public:
    SearchPath(const std::string& lpstat, const std::string& lp) : m_before(std::getenv("PATH")) {
        Put("lpstat", lpstat);
        Put("lp", lp);
        ::setenv("PATH", m_folder.Path().c_str(), 1);
    }
    ~SearchPath() { ::setenv("PATH", m_before.c_str(), 1); }
    const ScratchFolder m_folder;

private:
    void Put(const char* name, const std::string& script) {
        if (!script.empty()) ::chmod(m_folder.Write(name, "#!/bin/sh\n" + script).c_str(), 0755);
    }
    std::string m_before;
};

}  // namespace

TEST(Printers, AreFoundOrItIsSaidWhyNot) {
    const struct {
        const char *name, *lpstat, *found;
    } rows[] = {
        {"names alone", "[ $1 = -e ] && echo HP_1 && echo 绘图仪", "HP_1 绘图仪 "},
        {"an older system, in the user's language",
         "[ $1 = -a ] || exit 1; echo 'HP 自从 2026年11月 开始接受请求'; echo 'HP again'; echo; echo 'A1 "
         "accepting requests'",
         "HP A1 "},
        {"none", "echo 'lpstat: No destinations added.' >&2; exit 1", "系统中没有打印机"},
        {"none, and it is no failure", "exit 0", "系统中没有打印机"},
        {"no print system", "", "系统中没有打印程序 (lpstat)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const SearchPath path(row.lpstat, "");
        ProgramSystem system;
        const PrinterList list = FindPrinters(system);
        std::string found;
        for (const std::string& name : list.names) found += name + " ";
        EXPECT_EQ(found + list.none, row.found);
    }
    CWindowSystem played;
    EXPECT_TRUE(FindPrinters(played).names.empty()) << "a session that is played prints nowhere";
}

TEST(Printers, AreSentAFileAsItIsNamed) {
    const struct {
        const char *name, *lp, *job, *wrong, *details;
    } rows[] = {
        {"taken", "printf '%s|' \"$@\" > \"${0%/*}/sent\"; echo \"request id is $2-12 (1 file(s))\"", "HP-12",
         "", "request id is HP-12 (1 file(s))"},
        {"refused", "echo 'lp: no such printer' >&2; exit 1", "", "打印系统没有接受", "lp: no such printer"},
        {"no program", "", "", "系统中没有打印程序 (lp)", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const SearchPath path("", row.lp);
        ProgramSystem system;
        const PrintJob job = SendToPrinter(system, "HP", "/tmp/a b; $HOME.pdf");
        EXPECT_EQ(job.job, row.job);
        EXPECT_EQ(job.wrong, row.wrong);
        EXPECT_EQ(job.details, row.details);
        if (job.wrong.empty()) {
            EXPECT_EQ(ReadWholeFile(path.m_folder.File("sent")), "-d|HP|/tmp/a b; $HOME.pdf|");
        }
    }
}
