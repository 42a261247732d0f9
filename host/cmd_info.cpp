// tvo info: tells what is in a model file.
#include <CLI/CLI.hpp>
#include <iostream>
#include <map>
#include <memory>
#include <string>

#include "host/commands.h"
#include "host/failure.h"
#include "host/host_data_base.h"
#include "host/json_text.h"
#include "host/models/model_build.h"
#include "host/models/model_content.h"
#include "host/models/model_plan.h"
#include "host/net_walk.h"
#include "host/part_kinds.h"
#include "host/tvo_model_host.h"

namespace {

struct InfoOptions {
    std::string file;
    bool json = false;
};

const char* const kFooter =
    "Reads the whole file. Of a damaged one it tells what can still be read, and what is wrong.\n"
    "\n--json: {\"type\":\"info\",\"file\",\"whole\",\"version\",\"bytes\",\"nodes\",\"lines\",\"plates\",\"others\","
    "\n         \"kinds\":{KIND:N} of the others,\"unit\","
    "\n         \"tolerance\",\"currentStorey\",\"extent\":[X1,Y1,X2,Y2] or null,"
    "\n         \"storeys\":[{\"storey\",\"nodes\",\"lines\",\"plates\"}],"
    "\n         \"sections\":[{\"kind\",\"sections\",\"whole\",\"components\",\"bytes\"}],\"faults\":[TEXT]}\n"
    "\nStatus: 0 when the file is whole, 1 when it is damaged or can't be read.\n";

struct StoreyCounts {
    std::size_t nodes = 0, lines = 0, plates = 0;
};

std::map<int, StoreyCounts> StoreysOf(const ModelContent& content) {
    std::map<int, StoreyCounts> storeys;
    for (const CGouJianEx* obj : content.nodes) ++storeys[obj->m_nCeng].nodes;
    for (const CGouJianEx* obj : content.lines) ++storeys[obj->m_nCeng].lines;
    for (const CGouJianEx* obj : content.plates) ++storeys[obj->m_nCeng].plates;
    return storeys;
}

std::vector<std::string> FaultTexts(const ModelFile& file, const ModelPlan& plan) {
    std::vector<std::string> texts;
    for (const auto* faults : {&file.faults, &plan.faults})
        for (const ModelFault& fault : *faults) texts.push_back(fault.Text());
    if (plan.faultCount > plan.faults.size())
        texts.push_back("and " + std::to_string(plan.faultCount - plan.faults.size()) + " more");
    return texts;
}

Json InfoJson(const std::string& path, const ModelFile& file, const ModelPlan& plan, const BuiltModel& built,
              CGridDataBase& db) {
    const std::vector<std::string> faults = FaultTexts(file, plan);
    Json json = {{"type", "info"}, {"file", path}, {"whole", faults.empty()}};
    if (file.header) json["version"] = file.header->version;
    json["bytes"] = file.bytes.size();
    json["nodes"] = built.nodes;
    json["lines"] = built.lines;
    json["plates"] = built.plates;
    json["others"] = built.others;
    for (const PartKind& kind : kPartKinds)
        if (const int count = db.GetGouJianCount(kind.type); HasOwnSections(kind) && count > 0) json["kinds"][kind.many] = count;
    if (file.header) {
        json["unit"] = "mm";
        json["tolerance"] = file.header->tolerance;
        json["currentStorey"] = file.header->currentStorey;
    }
    const Extent extent = NetExtent(db);
    json["extent"] = nullptr;
    if (!extent.IsEmpty())
        json["extent"] = {JsonNumber(extent.minX), JsonNumber(extent.minY), JsonNumber(extent.maxX), JsonNumber(extent.maxY)};
    json["storeys"] = Json::array();
    for (const auto& [storey, n] : StoreysOf(ContentOf(db)))
        json["storeys"].push_back({{"storey", storey}, {"nodes", n.nodes}, {"lines", n.lines}, {"plates", n.plates}});
    json["sections"] = Json::array();
    for (const SectionKind kind : kSectionKinds) {
        const KindTally& tally = plan.tally[static_cast<std::size_t>(SectionRank(kind))];
        if (tally.sections == 0) continue;
        json["sections"].push_back({{"kind", SectionName(kind)},
                                    {"sections", tally.sections},
                                    {"whole", tally.whole},
                                    {"components", tally.kept},
                                    {"bytes", tally.bytes}});
    }
    if (const std::string remarks = built.Remarks(); !remarks.empty()) json["remarks"] = remarks;
    json["faults"] = faults;
    return json;
}

void PrintInfo(const Json& info) {
    std::cout << info["file"].get<std::string>() << ": " << info["bytes"] << " bytes"
              << (info["whole"] ? ", whole\n" : ", damaged\n");
    if (info.contains("version"))
        std::cout << "format " << info["version"] << ", unit mm, net tolerance " << info["tolerance"] << ", current storey "
                  << info["currentStorey"] << '\n';
    std::cout << "nodes " << info["nodes"] << ", lines " << info["lines"] << ", plates " << info["plates"]
              << ", other components " << info["others"] << '\n';
    if (info.contains("kinds"))
        for (const auto& [kind, count] : info["kinds"].items()) std::cout << kind << ' ' << count << '\n';
    if (const Json& e = info["extent"]; !e.is_null())
        std::cout << "from (" << e[0] << ", " << e[1] << ") to (" << e[2] << ", " << e[3] << ")\n";
    for (const Json& s : info["storeys"])
        std::cout << "storey " << s["storey"] << ": nodes " << s["nodes"] << ", lines " << s["lines"] << ", plates "
                  << s["plates"] << '\n';
    for (const Json& s : info["sections"])
        std::cout << s["kind"].get<std::string>() << ": " << s["whole"] << " of " << s["sections"]
                  << " whole, entries " << s["components"] << ", bytes " << s["bytes"] << '\n';
    if (info.contains("remarks")) std::cout << info["remarks"].get<std::string>() << '\n';
    for (const Json& fault : info["faults"]) std::cout << "fault: " << fault.get<std::string>() << '\n';
}

int RunInfo(const InfoOptions& options) {
    const ModelFile file = ReadModelFile(options.file);
    const TvoModelHost host;
    ModelPlan plan = PlanModel(file, host);
    CTvoHostDataBase db;
    const BuiltModel built = BuildModel(plan, file.header, db, host);
    const Json info = InfoJson(options.file, file, plan, built, db);
    if (options.json)
        PrintJsonLine(std::cout, info);
    else
        PrintInfo(info);
    return info["whole"] ? kDone : kDataUnusable;
}

}  // namespace

Command AddInfoCommand(CLI::App& app) {
    auto options = std::make_shared<InfoOptions>();
    CLI::App* command = app.add_subcommand("info", "Tell what is in a model file");
    command->add_option("MODEL", options->file, "the model file")->required();
    command->add_flag("--json", options->json, "as one JSON object");
    command->footer(kFooter);
    return {command, [options] { return RunInfo(*options); }};
}
