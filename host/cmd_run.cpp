// tvo run: edits a net by the commands of a script.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "host/commands.h"
#include "host/script.h"
#include "host/script_reader.h"

namespace {

const char* const kAbout =
    "Edits a net by commands, one a line, and prints the results as JSON, one object a line.\n"
    "# starts a comment; a word with spaces stands in double quotes, a quote in it written twice.\n"
    "Coordinates and lengths are millimetres, angles degrees. Ends snap to nodes within the tolerance\n"
    "(50 at start), crossings break lines. Everything up to the next start is one undo step. Once\n"
    "plates stand they follow each edit, and nodes that it leaves without lines go, except those that\n"
    "node placed; between begin and end this waits for the end. Outer contours are no plates unless\n"
    "outer is set. A load stays while its plate keeps its place and size.";

std::string Footer() {
    return std::string(kAbout) + "\n\nCommands:\n" + Script::Help() +
           "\nResults:\n"
           "  line, getline, bulge, arc, arc3:\n"
           "    {\"type\":\"result\",\"line\":ID or null,\"existed\":B,\"swapped\":B,\"degenerate\":B}\n"
           "    line is null where breaking is on: the line may stand in pieces by then\n"
           "  rect:   {\"type\":\"rect\",\"offered\":[ID...],\"kept\":[ID...]}\n"
           "  dump:   {\"type\":\"node\",\"id\":N,\"no\":N,\"x\":F,\"y\":F,\"storey\":N}\n"
           "          {\"type\":\"line\",\"id\":N,\"no\":N,\"start\":ID,\"end\":ID,\"arc\":0 or 1,\"bulge\":F,"
           "\"length\":F,\"storey\":N}\n"
           "          {\"type\":\"plate\",\"id\":N,\"no\":N,\"tag\":N,\"area\":F,\"perimeter\":F,\"cx\":F,\"cy\":F,\n"
           "           \"sides\":[[[LINEID,DIRECTION],...],...]}\n"
           "          {\"type\":\"load\",\"id\":N,\"no\":N,\"plate\":ID,\"value\":F}\n"
           "    a side is a straight line or an arc, of one net line or several; direction 1: along the net line\n"
           "          {\"type\":KIND,\"id\":N,\"no\":N,\"tag\":N,\"status\":N,\"storey\":N,\"box\":[X1,Y1,X2,Y2] or null,...}\n"
           "    for text, field, point, pline, arc, circle, disc, polygon and rider, and component for what has no name;\n"
           "    status 2 is hidden; texts and graphics have their geometry and colour besides, a rider its line, width\n"
           "    and outline of [X,Y,C], C half the angle of the arc to the next vertex in radians, clockwise\n"
           "  text, point, pline, parc, circle, disc, polygon, rider:\n"
           "          {\"type\":\"added\",\"kind\":KIND,\"id\":N}\n"
           "    a rider of the width and tag of one that stands on the line is that one\n"
           "  stat:   {\"type\":\"stat\",\"nodes\":N,\"lines\":N,\"plates\":N,\"dangling\":N,\"area\":F,"
           "\"canUndo\":B,\"canRedo\":B}\n"
           "    dangling lines are those that no closed way can use; the area is that of all plates counted\n"
           "  combine:        {\"type\":\"combine\",\"plates\":[ID...]}\n"
           "  embrace:        {\"type\":\"embrace\",\"plate\":ID,\"by\":ID or null}\n"
           "  inside, around: {\"type\":\"inside\",\"plate\":ID,\"plates\":[ID...]}\n"
           "  stride:         {\"type\":\"stride\",\"line\":ID,\"plates\":[ID...]}\n"
           "  isrect:         {\"type\":\"isrect\",\"plate\":ID,\"rect\":B,\"width\":F,\"height\":F,\"angle\":F,\n"
           "                   \"corners\":[[X,Y]*4]}; without the sizes when it is none\n"
           "  field, densify: {\"type\":\"field\",\"id\":ID,\"tag\":N,\"display\":NAME,\"scheme\":N,\"nodes\":N,\"triangles\":N,\n"
           "                   \"passedOver\":N,\"min\":F,\"max\":F,...}; passedOver counts triangles that can't be shown, remarks\n"
           "                   says why; coordinates of field files are metres\n"
           "  grid:   {\"type\":\"grid\",\"x\":N,\"y\":N}, the numbers of positions across and up\n"
           "  import: the report of tvo import --json\n"
           "  save, open, savetext, loadtext:\n"
           "          {\"type\":\"save\",\"file\":NAME,\"nodes\":N,\"lines\":N,\"plates\":N,...}; open and loadtext tell\n"
           "          what could not be resolved and what does not come back\n"
           "\nStatus: 0 at the end of the script; 2 at the first bad command, which is told on the error\n"
           "stream as \"error: line N: ...\"; with --keep-going 1 at the end if there was one; 1 if the\n"
           "script can't be read.\n"
           "\nExample:  printf 'line 0 0 6000 0\\nline 3000 -1000 3000 1000\\nstat\\n' | tvo run\n";
}

}  // namespace

Command AddRunCommand(CLI::App& app) {
    auto options = std::make_shared<ScriptSource>();
    CLI::App* command = app.add_subcommand("run", "Edit a net by the commands of a script");
    command->add_option("SCRIPT", options->file, "file of commands; - or nothing: the standard input");
    command->add_flag("--keep-going", options->keepGoing, "go on after a bad command");
    command->footer(Footer());
    return {command, [options] {
                Script script(std::cout);
                return ReadScript(*options, [&](std::string_view line) { script.Run(line); });
            }};
}
