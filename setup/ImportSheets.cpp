#include "setup/ImportSheets.h"

#include <QDate>
#include <QRegularExpression>
#include <cmath>
#include <map>

namespace qx::setup {
namespace {

using K = ColumnKind;

std::vector<ColumnSpec> partnerColumns() {
    return {
        {"KH_GYS_ID", "编号", K::Text, 10, true}, {"KG_NAME", "简称", K::Text, 40},
        {"PYM", "拼音码", K::Text, 40},           {"FULL_NAME", "全称", K::Text, 100},
        {"FZR", "负责人", K::Text, 20},           {"TEL", "电话", K::Text, 50},
        {"TEL1", "电话2", K::Text, 50},           {"FAX", "传真", K::Text, 30},
        {"GRADE", "等级", K::Text, 10},           {"ADDR_ID", "地区", K::Text, 10},
        {"SEND_ID", "送货方式", K::Text, 2},      {"BDATE", "开始日期", K::Date},
        {"EDATE", "结束日期", K::Date},           {"ADDR", "地址", K::Text, 100},
        {"EMAIL", "E-mail", K::Text, 50},         {"WEB", "网址", K::Text, 50},
        {"NOTE", "备注", K::Text, 100},           {"BEGIN_MONEY", "期初金额", K::Number},
    };
}

bool isWholeNumber(const QString& text) {
    static const QRegularExpression whole("^\\d+(\\.0+)?$");
    return whole.match(text).hasMatch();
}

bool isNumber(const QString& text) {
    static const QRegularExpression number("^-?\\d+(\\.\\d+)?$");
    return number.match(text).hasMatch();
}

bool hasControl(const QString& text) {
    for (const QChar c : text)
        if (c.category() == QChar::Other_Control) return true;
    return false;
}

// A day from a date cell: text "YYYY-MM-DD" (or with "/"), or a spreadsheet day number.
QString dateText(const Cell& cell) {
    if (cell.numeric) {
        bool ok = false;
        const double serial = cell.text.toDouble(&ok);
        if (ok && serial >= 1 && serial < 2958466)
            return QDate(1899, 12, 30).addDays(qint64(std::floor(serial))).toString("yyyy-MM-dd");
        return {};
    }
    QString text = cell.text.trimmed();
    text.replace('/', '-');
    QDate d = QDate::fromString(text.left(10), "yyyy-MM-dd");
    if (!d.isValid()) d = QDate::fromString(text, "yyyy-M-d");
    return d.isValid() ? d.toString("yyyy-MM-dd") : QString();
}

}  // namespace

const SheetSpec& goodsSheet() {
    static const SheetSpec spec{
        "商品资料",
        "imp_cl",
        {
            {"A", "仓库", K::Text, 16, true},   {"B", "款号", K::Text, 17, true},  {"C", "品名", K::Text, 80},
            {"D", "拼音码", K::Text, 80},       {"E", "品牌", K::Text, 20},        {"F", "单位", K::Text, 6},
            {"G", "类别", K::Text, 30},         {"dyear", "年份", K::Text, 10},    {"djj", "季节", K::Text, 10},
            {"col_id", "色号", K::Text, 4},     {"H", "颜色", K::Text, 20, true},  {"I", "尺码组", K::Text, 10},
            {"J", "尺码1", K::Quantity},        {"K", "尺码2", K::Quantity},       {"L", "尺码3", K::Quantity},
            {"M", "尺码4", K::Quantity},        {"N", "尺码5", K::Quantity},       {"O", "尺码6", K::Quantity},
            {"P", "尺码7", K::Quantity},        {"Q", "尺码8", K::Quantity},       {"R", "尺码9", K::Quantity},
            {"S", "尺码10", K::Quantity},       {"T", "成本单价", K::Number},      {"U", "进价", K::Number},
            {"V", "吊牌价", K::Number},         {"w", "材料", K::Text, 50},        {"x", "条码规则", K::BarcodeRule},
            {"vipf", "不积分", K::Text, 10},    {"check_kc", "不允许负库存", K::Text, 10},
        },
        {0, 1, 10},
        "仓库+款号+颜色(SKU)",
    };
    return spec;
}

const SheetSpec& customerSheet() {
    static const SheetSpec spec{"客户资料", "kh", partnerColumns(), {0}, "编号"};
    return spec;
}

const SheetSpec& supplierSheet() {
    static const SheetSpec spec{"供应商资料", "gys", partnerColumns(), {0}, "编号"};
    return spec;
}

const SheetSpec& memberSheet() {
    static const SheetSpec spec{
        "会员资料",
        "vip",
        {
            {"VIPID", "会员卡号", K::Text, 20, true}, {"VIPNAME", "姓名", K::Text, 30},
            {"PYM", "拼音码", K::Text, 30},           {"VIPTEL", "电话", K::Text, 50},
            {"VIPFAX", "传真", K::Text, 30},          {"VIPADD", "地址", K::Text, 100},
            {"VIPEMAIL", "E-mail", K::Text, 50},      {"VIPNUM", "证件号", K::Text, 30},
            {"BDATE", "入会日期", K::Date},           {"EDATE", "到期日期", K::Date},
            {"BIRDATE", "生日", K::Date},             {"VIPGRARD", "等级", K::Text, 10},
            {"VIPZK", "折扣", K::Number},             {"VIPF", "积分", K::Number},
            {"VIPF_b", "已兑积分", K::Number},        {"VIPM", "消费金额", K::Number},
            {"VIPNOTE", "备注", K::Text, 100},        {"T", "状态", K::Quantity},
        },
        {0},
        "会员卡号",
    };
    return spec;
}

ScanResult scanSheet(const SheetSpec& spec, const SheetRows& sheet, const std::function<void(int, int)>& progress) {
    ScanResult out;
    const int width = int(spec.columns.size());
    std::map<QString, int> keys;  // key -> sheet row of its first occurrence
    const int total = int(sheet.size());
    for (int r = 1; r < total; ++r) {
        if (progress && r % 1000 == 0) progress(r, total);
        const auto& cells = sheet[size_t(r)];
        QStringList values;
        std::vector<bool> numeric;
        bool any = false;
        for (int c = 0; c < width; ++c) {
            const Cell cell = size_t(c) < cells.size() ? cells[size_t(c)] : Cell{};
            values << cell.text;
            numeric.push_back(cell.numeric);
            if (!cell.text.trimmed().isEmpty()) any = true;
        }
        bool extra = false;
        for (size_t c = size_t(width); c < cells.size(); ++c)
            if (!cells[c].text.trimmed().isEmpty()) extra = true;
        if (!any && !extra) continue;  // empty rows are skipped
        const int index = int(out.rows.size());
        const int sheetRow = r + 1;
        const auto bad = [&](const QString& column, const QString& reason) {
            out.problems.push_back({sheetRow, column, reason});
            out.badRows.insert(index);
        };
        if (extra) bad("", "本行在第 " + QString::number(width) + " 列之后还有内容,列的顺序与模板不符");
        for (int c = 0; c < width; ++c) {
            const ColumnSpec& col = spec.columns[size_t(c)];
            QString& v = values[c];
            const QString trimmed = v.trimmed();
            if (col.required && trimmed.isEmpty()) {
                bad(col.title, QString(col.title) + "不能为空");
                continue;
            }
            if (trimmed.isEmpty()) {
                v.clear();
                continue;
            }
            switch (col.kind) {
                case K::Text:
                    if (hasControl(v)) bad(col.title, "含有换行或其他控制字符");
                    else if (v.size() > col.maxLength)
                        bad(col.title, "文字过长(" + QString::number(v.size()) + " 个字,最多 " +
                                           QString::number(col.maxLength) + " 个字)");
                    break;
                case K::Quantity:
                    if (!isWholeNumber(trimmed)) bad(col.title, "数量「" + trimmed.left(20) + "」不是 0 或正整数");
                    else v = QString::number(trimmed.toDouble(), 'f', 0);
                    break;
                case K::Number:
                    if (!isNumber(trimmed)) bad(col.title, "「" + trimmed.left(20) + "」不是数字");
                    else v = trimmed;
                    break;
                case K::Date: {
                    const QString d = dateText(Cell{trimmed, numeric[size_t(c)]});
                    if (d.isEmpty()) bad(col.title, "「" + trimmed.left(20) + "」不是日期(应为 YYYY-MM-DD)");
                    else v = d;
                    break;
                }
                case K::BarcodeRule:
                    if (trimmed != "0" && trimmed != "1" && trimmed != "3" && trimmed != "5")
                        bad(col.title, "未知的条码规则「" + trimmed.left(20) + "」(只能为空或 0、1、3、5)");
                    else v = trimmed;
                    break;
            }
            if (col.kind == K::Text && col.required) v = trimmed;
        }
        QString key;
        for (int k : spec.keyColumns) key += values[k].trimmed().toUpper() + QChar(0x1F);
        if (!out.badRows.count(index)) {
            if (auto it = keys.find(key); it != keys.end())
                bad(spec.columns[size_t(spec.keyColumns.back())].title,
                    QString(spec.keyName) + " 与第 " + QString::number(it->second) + " 行重复");
            else
                keys.emplace(key, sheetRow);
        }
        out.rows.push_back(values);
        out.numeric.push_back(numeric);
        out.sheetRows.push_back(sheetRow);
    }
    if (progress) progress(total, total);
    return out;
}

std::vector<int> acceptedRows(const ScanResult& scan, bool skipBad) {
    std::vector<int> out;
    if (!scan.badRows.empty() && !skipBad) return out;
    for (int i = 0; i < int(scan.rows.size()); ++i)
        if (!scan.badRows.count(i)) out.push_back(i);
    return out;
}

QString titleLine(const SheetSpec& spec) {
    QStringList titles;
    for (const ColumnSpec& c : spec.columns) titles << c.title;
    return titles.join(',');
}

}  // namespace qx::setup
