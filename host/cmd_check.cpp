// tvo check: what keeps the cells of a net open.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "host/commands.h"
#include "host/drawing.h"
#include "host/failure.h"
#include "host/host_data_base.h"
#include "host/import_job.h"
#include "host/json_text.h"
#include "host/models/model_build.h"
#include "host/net_check.h"
#include "host/tvo_model_host.h"
#include "model/profile.h"
#include "platform/string.h"

namespace {

struct CheckOptions {
    ImportJob job;  // without a layer the file is a model
    std::optional<int> tolerance;
    bool json = false;
};

struct KindText {
    const char* type;
    const char* one;   // in words
    const char* many;
};

constexpr KindText kKinds[kFaultKindCount] = {
    {"dangling", "dangling end", "dangling ends"},
    {"gap", "gap between two ends", "gaps between two ends"},
    {"near", "node beside a line that it doesn't join", "nodes beside a line that they don't join"},
    {"short", "line shorter than the tolerance", "lines shorter than the tolerance"},
    {"duplicate", "duplicate", "duplicates"},
};

bool IsLine(std::uint32_t id) { return id >> 24 == GJLX_NET_LINE; }

Json FaultJson(const NetFault& fault) {
    Json json = {{"type", kKinds[fault.kind].type}};
    switch (fault.kind) {
        case kFaultDangling:
        case kFaultNear:
            json["node"] = fault.first;
            json["line"] = fault.second;
            break;
        case kFaultGap: json["nodes"] = {fault.first, fault.second}; break;
        case kFaultShort: json["line"] = fault.first; break;
        default: json[IsLine(fault.first) ? "lines" : "nodes"] = {fault.first, fault.second};
    }
    json["x"] = JsonNumber(fault.x);
    json["y"] = JsonNumber(fault.y);
    if (fault.kind == kFaultDangling) return json;
    json["x2"] = JsonNumber(fault.x2);
    json["y2"] = JsonNumber(fault.y2);
    json["distance"] = JsonNumber(fault.distance);
    return json;
}

std::string PlaceText(double x, double y) {
    char text[64];
    std::snprintf(text, sizeof text, "(%.9g, %.9g)", x, y);
    return text;
}

std::string FaultText(const NetFault& fault) {
    const std::string first = std::to_string(fault.first), second = std::to_string(fault.second);
    const std::string at = PlaceText(fault.x, fault.y), to = PlaceText(fault.x2, fault.y2);
    char distance[40];
    std::snprintf(distance, sizeof distance, "%.4g", fault.distance);
    switch (fault.kind) {
        case kFaultDangling: return at + "  node " + first + ", line " + second;
        case kFaultGap: return at + " to " + to + "  " + distance + "  nodes " + first + ", " + second;
        case kFaultNear: return at + " to " + to + "  " + distance + "  node " + first + ", line " + second;
        case kFaultShort: return at + " to " + to + "  " + distance + "  line " + first;
        default: return at + " to " + to + (IsLine(fault.first) ? "  lines " : "  nodes ") + first + ", " + second;
    }
}

void PrintFaults(const std::vector<NetFault>& faults, const std::size_t (&counts)[kFaultKindCount]) {
    const NetFault* last = nullptr;
    for (const NetFault& fault : faults) {
        const KindText& kind = kKinds[fault.kind];
        if (!last || last->kind != fault.kind)
            std::cout << counts[fault.kind] << " " << (counts[fault.kind] == 1 ? kind.one : kind.many) << "\n";
        std::cout << "  " << FaultText(fault) << "\n";
        last = &fault;
    }
    if (faults.empty()) std::cout << "nothing keeps a cell open\n";
}

bool IsDrawing(const std::string& file) {
    const std::string end = file.size() < 4 ? "" : file.substr(file.size() - 4);
    return CString(end).CompareNoCase(".dxf") == 0;
}

void Load(const CheckOptions& options, CTvoHostDataBase& db) {
    const ImportJob& job = options.job;
    if (job.layer.empty()) {
        if (IsDrawing(job.file)) throw UsageFailure(job.file + " is a drawing; --layer says which layer to take");
        const std::string remarks = OpenModel(job.file, db, TvoModelHost()).Remarks();
        if (!remarks.empty()) std::cerr << "warning: " << remarks << '\n';
        if (options.tolerance) g_cTvoProfile.m_nNetTolerance = *options.tolerance;
        return;
    }
    g_cTvoProfile.m_nNetTolerance = options.tolerance.value_or(50);
    ImportOutcome outcome = RunImportJob(job, db);
    DeleteNodesWithoutLines(db, outcome);
}

int RunCheck(const CheckOptions& options) {
    CTvoHostDataBase db;
    Load(options, db);
    const auto faults = CheckNet(db, g_cTvoProfile.m_nNetTolerance);
    std::size_t counts[kFaultKindCount] = {};
    for (const NetFault& fault : faults) ++counts[fault.kind];
    if (options.json) {
        for (const NetFault& fault : faults) PrintJsonLine(std::cout, FaultJson(fault));
        Json sum = {{"type", "check"}, {"file", options.job.file}, {"tolerance", g_cTvoProfile.m_nNetTolerance}};
        for (int kind = 0; kind < kFaultKindCount; ++kind) sum[kKinds[kind].type] = counts[kind];
        PrintJsonLine(std::cout, sum);
    } else {
        PrintFaults(faults, counts);
    }
    return faults.empty() ? kDone : kDataUnusable;
}

}  // namespace

Command AddCheckCommand(CLI::App& app) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App* command = app.add_subcommand("check", "List what keeps the cells of a net open");
    command->add_option("FILE", options->job.file, "a model, or with --layer a DXF drawing")->required();
    CLI::Option* layer = command->add_option("--layer", options->job.layer, "layer of the drawing to take")->type_name("NAME");
    command->add_option("--tolerance", options->tolerance, "as in tvo import; for a model its own if not given")
        ->check(CLI::Range(1, kMaxTolerance))
        ->type_name("MM");
    command->add_option("--scale", options->job.scale, "as in tvo import")->check(CheckScale)->type_name("F")->needs(layer);
    command->add_flag("--json", options->json, "print JSON, one object a place");
    command->footer(
        "Lists, each with coordinates and identities:\n"
        "  dangling   ends where a line stops and no other meets it\n"
        "  gap        two ends from 1 to 5 tolerances apart which no line joins, a way ending at one of them\n"
        "  near       nodes within the tolerance of a line that they don't join; within 5 where a way ends\n"
        "  short      lines shorter than the tolerance\n"
        "  duplicate  lines that are the same, nodes nearer than the tolerance\n"
        "\nJSON:  {\"type\":\"dangling\",\"node\":ID,\"line\":ID,\"x\",\"y\"}\n"
        "       {\"type\":\"gap\",\"nodes\":[ID,ID],\"x\",\"y\",\"x2\",\"y2\",\"distance\"}\n"
        "       {\"type\":\"near\",\"node\":ID,\"line\":ID,\"x\",\"y\",\"x2\",\"y2\",\"distance\"}; x2, y2 on the line\n"
        "       {\"type\":\"short\",\"line\":ID,\"x\",\"y\",\"x2\",\"y2\",\"distance\"}\n"
        "       {\"type\":\"duplicate\",\"lines\" or \"nodes\":[ID,ID],\"x\",\"y\",\"x2\",\"y2\",\"distance\"}\n"
        "       {\"type\":\"check\",\"file\",\"tolerance\",\"dangling\":N,\"gap\":N,\"near\":N,\"short\":N,\"duplicate\":N}\n"
        "\nStatus: 0 if there is nothing to list; 1 if there is, or if the file can't be read; 2 wrong usage.\n"
        "\nExample:  tvo check plan.dxf --layer AXIS\n");
    return {command, [options] { return RunCheck(*options); }};
}
