#include "host/editor/reason_text.h"

#include <cerrno>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

namespace {

constexpr const char* kOther = "其它错误";

struct SystemReason {
    int error;
    const char* chinese;
};
constexpr SystemReason kReasons[] = {
    {ENOENT, "文件或文件夹不存在"}, {EACCES, "没有权限"},         {EPERM, "没有权限"},
    {EISDIR, "这是一个文件夹"},     {ENOTDIR, "路径不对"},        {ENOSPC, "磁盘已满"},
    {EROFS, "磁盘是只读的"},        {ENAMETOOLONG, "文件名太长"}, {ELOOP, "链接成环"},
    {EDQUOT, "超出磁盘配额"},       {EIO, "读写磁盘出错"},        {ENOMEM, "内存不足"},
    {EMFILE, "打开的文件太多"},     {ENFILE, "打开的文件太多"},   {EBUSY, "文件正被占用"},
    {ETXTBSY, "文件正被占用"},      {EFBIG, "文件太大"},          {ENXIO, "不是普通文件"},
    {EINVAL, "文件名不能用"},       {ENODEV, "设备不在"},         {ESTALE, "网络文件已失效"},
};
constexpr int kLargestError = 200;

/// A phrase with holes: * is taken over as it stands, @ is a name, # a reason, phrases themselves. %1 and so
/// on say where they go.
struct Phrase {
    const char* english;
    const char* chinese;
};
constexpr Phrase kPhrases[] = {
    // Places, before what is wrong there
    {"@ at byte *: #", "%1, 第 %2 字节: %3"},
    {"byte *: #", "第 %1 字节: %2"},
    {"line *: #", "第 %1 行: %2"},
    // Sections of models
    {"header", "文件头"},
    {"counters section", "计数段"},
    {"nodes section", "节点段"},
    {"lines section", "轴线段"},
    {"plates section", "板段"},
    {"host components section", "其它构件段"},
    {"host data section", "附加数据段"},
    {"texts section", "文字段"},
    {"points section", "点段"},
    {"plain lines section", "直线段"},
    {"arcs section", "圆弧段"},
    {"circles section", "圆段"},
    {"discs section", "圆面段"},
    {"polygons section", "多边形段"},
    {"unknown section", "不认识的段"},
    {"section *", "第 %1 段"},
    // Models
    {"this is no model file", "不是模型文件"},
    {"the file ends within it", "文件在此中断"},
    {"the file ends within its head", "文件在段头中断"},
    {"its checksum does not hold", "校验和不符"},
    {"version * of the format is not known here", "不认识第 %1 版格式"},
    {"there is no whole head", "没有完整的段头"},
    {"it tells of * @, and there are *", "记有 %1 个%2, 实有 %3 个"},
    {"bytes", "字节"},
    {"sections", "段"},
    {"nodes", "节点"},
    {"lines", "轴线"},
    {"plates", "板"},
    {"other components", "其它构件"},
    {"its kind is not known here", "不认识这种段"},
    {"it stands behind a section that it should stand before", "段的次序不对"},
    {"unit * is not known here", "不认识第 %1 种单位"},
    {"a net tolerance of *", "轴网容差不能是 %1"},
    {"no counters section stands behind it", "后面缺少计数段"},
    {"there is one already", "这种段已经有一个"},
    {"its length is wrong", "长度不对"},
    {"type byte * is out of place", "类型 %1 不该在此"},
    {"it is too short for its count", "长度容不下所记的个数"},
    {"a plate with impossible counts", "板的边数不对"},
    {"status *", "状态不能是 %1"},
    {"attributes of nothing", "属性没有所属的构件"},
    {"its attributes are of another count", "属性的个数不对"},
    {"identity * has type byte * and no number", "编号 %1 (类型 %2) 没有序号"},
    {"identity * has type byte *, which is wrong here", "编号 %1 的类型 %2 不该在此"},
    {"identity * has the type byte of the @", "编号 %1 的类型属于%2"},
    {"identity * stands there twice", "编号 %1 重复"},
    {"identity * is out of order", "编号 %1 的次序不对"},
    {"identity * is of another type", "编号 %1 的类型不符"},
    {"node * lies at (*, *)", "节点 %1 不能在 (%2, %3)"},
    {"line * is of kind *", "轴线 %1 的种类不能是 %2"},
    {"line * has a bulge that is none", "轴线 %1 的弧度不对"},
    {"line * ends at node *, which is not there", "轴线 %1 的端点 %2 不存在"},
    {"components of type * are not known here", "不认识类型 %1 的构件"},
    {"it ends within a component", "在一个构件中间中断"},
    {"more stands there than components", "构件之后有多余的数据"},
    {"component * can't be read", "构件 %1 读不出来"},
    {"the counter of type * lies below *", "类型 %1 的计数小于 %2"},
    // Journals and recordings
    {"this is no journal, or its head is damaged", "不是恢复日志, 或开头已损坏"},
    {"its first step is damaged", "第一步已损坏"},
    {"*, on which it stands, is another file now", "它所依据的 %1 已是另一个文件"},
    {"is the model that is open; record under another name", "这是正在编辑的模型, 请另取名字"},
    {"too much has been done to tell it from the start", "操作太多, 已不能从头记录"},
    {"the model holds what a file doesn't keep, such as a field", "模型里有文件不保存的内容 (例如场), 只能从启动起记录"},
    {"was written over after it had been read", "读入之后内容已被改写"},
    {"a model from a journal is not in the recording", "从日志恢复的模型不在记录里"},
    // Drawings
    {"not a DXF file", "不是 DXF 图纸"},
    {"too many entities", "图元太多"},
    {"the file ends in the section @", "文件在%1中断"},
    {"that it is in", "一段中间"},
    {"without name", "没有名字的段"},
    {"ENTITIES", "图元段"},
    {"HEADER", "标题段"},
    {"TABLES", "表段"},
    {"BLOCKS", "图块段"},
    {"OBJECTS", "对象段"},
    {"the file ends before its entities", "文件在图元之前中断"},
    {"the file ends in the middle of a group", "文件在一组数据中间中断"},
    {"a line has no end", "一行没有结尾"},
    {"the file does not begin with a group code", "文件开头不是组码"},
    {"a group has a code whose size is not known", "组码的长度未知"},
    // Files of fields
    {"the node's number", "节点号"},
    {"a node's number", "节点号"},
    {"a node's place", "节点坐标"},
    {"a node's values", "节点值"},
    {"the element's number", "单元号"},
    {"an integer tag", "整数标记"},
    {"a corner", "角点"},
    {"a value", "数值"},
    {"a node", "节点"},
    {"a block of nodes", "一组节点"},
    {"a block of elements", "一组单元"},
    {"an element", "单元"},
    {"the version", "版本"},
    {"the kind of file", "文件种类"},
    {"the dimension", "维数"},
    {"the entity", "实体号"},
    {"the type", "类型"},
    {"a tag", "标记"},
    {"a text tag", "文字标记"},
    {"a real tag", "实数标记"},
    {"the number of tags", "标记数"},
    {"the number of elements", "单元数"},
    {"the number of nodes", "节点数"},
    {"the number of blocks", "组数"},
    {"is longer than * bytes", "超过 %1 字节"},
    {"the file ends where @ should follow", "文件在此中断, 后面应有%1"},
    {"@ is missing", "缺少%1"},
    {"@: * is no whole number", "%1 %2 不是整数"},
    {"@: * is out of range", "%1 %2 超出范围"},
    {"@: * is no number", "%1 %2 不是数"},
    {"there is more on the line than belongs there: *", "行末多出 %1"},
    {"a node has at most ten values", "一个节点最多 10 个值"},
    {"is neither node nor tri, nor a comment", "开头不是 node, tri 或注释 #"},
    {"a section should begin here", "这里应开始一段"},
    {"$MeshFormat should come first", "开头应是 $MeshFormat 段"},
    {"only versions 2.2 and 4.1 are read", "只能读 2.2 和 4.1 版"},
    {"the file is binary; only ASCII files are read", "这是二进制文件, 只能读文本文件"},
    {"the number of components makes no sense", "值的个数不对"},
    {"@ should follow", "后面应有%1"},
    // Any file
    {"not a regular file", "不是普通文件"},
    {"a folder", "这是一个文件夹"},
    {"no path", "没有文件名"},
    {"out of memory", "内存不足"},
    {"it can't be drawn", "不能画到纸上"},
};

std::optional<std::string> Translated(std::string_view text);

/// What fills a hole. In a file of a field it may be named by the format's own letters.
std::string Part(std::string_view text, bool reason) {
    if (const auto known = Translated(text)) return *known;
    if (reason) return "内容不对";
    const bool own = text.starts_with('$') || text.size() <= 2;
    return own ? std::string(1, ' ').append(text) : std::string("内容");
}

/// Fits a phrase to a text; what fills its holes, nothing if it doesn't fit. A hole ends where what follows
/// it first stands.
std::optional<std::vector<std::string>> Fit(std::string_view phrase, std::string_view text) {
    std::vector<std::string> holes;
    while (!phrase.empty()) {
        const std::size_t hole = phrase.find_first_of("*@#");
        const std::string_view plain = phrase.substr(0, hole);
        if (!text.starts_with(plain)) return {};
        text.remove_prefix(plain.size());
        if (hole == phrase.npos) break;
        const char kind = phrase[hole];
        phrase.remove_prefix(hole + 1);
        const std::string_view next = phrase.substr(0, phrase.find_first_of("*@#"));
        const std::size_t end = next.empty() ? text.size() : text.find(next);
        if (end == text.npos || end == 0) return {};
        const std::string_view filling = text.substr(0, end);
        holes.push_back(kind == '*' ? std::string(filling) : Part(filling, kind == '#'));
        text.remove_prefix(end);
    }
    if (!text.empty()) return {};
    return holes;
}

std::optional<std::string> Translated(std::string_view text) {
    for (int error = 1; error < kLargestError; ++error)
        if (text == std::strerror(error)) return ReasonOf(error);
    for (const Phrase& phrase : kPhrases) {
        const auto holes = Fit(phrase.english, text);
        if (!holes) continue;
        std::string chinese = phrase.chinese;
        for (std::size_t i = holes->size(); i > 0; --i)
            if (const std::size_t at = chinese.find(std::string(1, '%').append(std::to_string(i)));
                at != chinese.npos)
                chinese.replace(at, 2, (*holes)[i - 1]);
        return chinese;
    }
    return {};
}

}  // namespace

std::string ReasonOf(int error) {
    for (const SystemReason& reason : kReasons)
        if (reason.error == error) return reason.chinese;
    return "系统错误 " + std::to_string(error);
}

std::string ReasonInChinese(const std::string& message, const std::string& path) {
    std::string reason = message;
    if (const std::size_t at = message.find(path + ": "); !path.empty() && at != std::string::npos)
        reason = message.substr(at + path.size() + 2);
    return Translated(reason).value_or(kOther);
}

std::string MessageInChinese(const std::string& message) {
    if (const auto all = Translated(message)) return *all;
    // A name may hold ": " as well.
    for (std::size_t at = message.find(": "); at != std::string::npos; at = message.find(": ", at + 1)) {
        const auto reason = Translated(std::string_view(message).substr(at + 2));
        if (!reason) continue;
        std::string name = message.substr(0, at);
        for (const char* verb : {"cannot read ", "cannot write ", "cannot open ", "cannot recover "})
            if (name.starts_with(verb)) name.erase(0, std::strlen(verb));
        return name + ": " + *reason;
    }
    return kOther;
}
