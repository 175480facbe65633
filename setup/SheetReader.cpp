#include "setup/SheetReader.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <cctype>
#include <cmath>
#include <map>
#include <memory>

#include <freexl.h>
#include <orcus/config.hpp>
#include <orcus/orcus_xlsx.hpp>
#include <orcus/spreadsheet/import_interface.hpp>

#include "framework/U_function.h"

namespace qx::setup {
namespace {

namespace ss = orcus::spreadsheet;

QString numberText(double value) { return FloatToStr(value); }

void put(SheetRows& rows, int row, int column, Cell cell) {
    if (row < 0 || column < 0) return;
    if (rows.size() <= size_t(row)) rows.resize(size_t(row) + 1);
    auto& r = rows[size_t(row)];
    if (r.size() <= size_t(column)) r.resize(size_t(column) + 1);
    r[size_t(column)] = std::move(cell);
}

// --- xlsx: liborcus hands every cell, shared string and merge to these interfaces ----------

class SharedStrings final : public ss::iface::import_shared_strings {
public:
    std::vector<std::string> strings;
    size_t append(std::string_view s) override {
        strings.emplace_back(s);
        return strings.size() - 1;
    }
    size_t add(std::string_view s) override {
        if (auto it = index_.find(std::string(s)); it != index_.end()) return it->second;
        const size_t i = append(s);
        index_.emplace(std::string(s), i);
        return i;
    }
    void set_segment_font(size_t) override {}
    void set_segment_bold(bool) override {}
    void set_segment_italic(bool) override {}
    void set_segment_font_name(std::string_view) override {}
    void set_segment_font_size(double) override {}
    void set_segment_font_color(ss::color_elem_t, ss::color_elem_t, ss::color_elem_t, ss::color_elem_t) override {}
    void append_segment(std::string_view s) override { segments_ += s; }
    size_t commit_segments() override {
        const size_t i = append(segments_);
        segments_.clear();
        return i;
    }

private:
    std::map<std::string, size_t> index_;
    std::string segments_;
};

struct SheetData {
    SheetRows rows;
    std::vector<std::pair<int, int>> stringCells;  // resolved after reading (row, column, index)
    std::vector<size_t> stringIndexes;
    QString firstMerge;    // "A1:B2" of the first merged range
    QString firstFormula;  // "C5" of the first formula cell
};

class Properties final : public ss::iface::import_sheet_properties {
public:
    explicit Properties(SheetData& d) : d_(d) {}
    void set_column_width(ss::col_t, double, orcus::length_unit_t) override {}
    void set_column_hidden(ss::col_t, bool) override {}
    void set_row_height(ss::row_t, double, orcus::length_unit_t) override {}
    void set_row_hidden(ss::row_t, bool) override {}
    void set_merge_cell_range(const ss::range_t& range) override {
        if (d_.firstMerge.isEmpty())
            d_.firstMerge = cellName(range.first.row, range.first.column) + ":" +
                            cellName(range.last.row, range.last.column);
    }

private:
    SheetData& d_;
};

class Formula final : public ss::iface::import_formula {
public:
    explicit Formula(SheetData& d) : d_(d) {}
    void set_position(ss::row_t row, ss::col_t col) override {
        if (d_.firstFormula.isEmpty()) d_.firstFormula = cellName(row, col);
    }
    void set_formula(ss::formula_grammar_t, std::string_view) override {}
    void set_shared_formula_index(size_t) override {}
    void set_result_string(std::string_view) override {}
    void set_result_value(double) override {}
    void set_result_bool(bool) override {}
    void set_result_empty() override {}
    void commit() override {}

private:
    SheetData& d_;
};

class Sheet final : public ss::iface::import_sheet {
public:
    explicit Sheet(SheetData& d) : d_(d), properties_(d), formula_(d) {}
    ss::iface::import_sheet_properties* get_sheet_properties() override { return &properties_; }
    ss::iface::import_formula* get_formula() override { return &formula_; }
    void set_auto(ss::row_t row, ss::col_t col, std::string_view s) override {
        put(d_.rows, row, col, Cell{QString::fromUtf8(s.data(), qsizetype(s.size())), false});
    }
    void set_string(ss::row_t row, ss::col_t col, ss::string_id_t sindex) override {
        d_.stringCells.emplace_back(row, col);
        d_.stringIndexes.push_back(sindex);
    }
    void set_value(ss::row_t row, ss::col_t col, double value) override {
        put(d_.rows, row, col, Cell{numberText(value), true});
    }
    void set_bool(ss::row_t row, ss::col_t col, bool value) override {
        put(d_.rows, row, col, Cell{value ? "1" : "0", true});
    }
    void set_date_time(ss::row_t row, ss::col_t col, int year, int month, int day, int, int, double) override {
        put(d_.rows, row, col, Cell{QString::asprintf("%04d-%02d-%02d", year, month, day), false});
    }
    void set_format(ss::row_t, ss::col_t, size_t) override {}
    void set_format(ss::row_t, ss::col_t, ss::row_t, ss::col_t, size_t) override {}
    void fill_down_cells(ss::row_t, ss::col_t, ss::row_t) override {}
    ss::range_size_t get_sheet_size() const override { return {1048576, 16384}; }

private:
    SheetData& d_;
    Properties properties_;
    Formula formula_;
};

// "B7" or "$B$7" (and "A1:AC9") as cell positions; a reference to another sheet is refused.
class References final : public ss::iface::import_reference_resolver {
public:
    ss::src_address_t resolve_address(std::string_view address) override {
        ss::src_address_t out{0, 0, 0};
        size_t i = 0;
        int column = 0, row = 0;
        if (i < address.size() && address[i] == '$') ++i;
        const size_t letters = i;
        while (i < address.size() && std::isalpha(static_cast<unsigned char>(address[i])))
            column = column * 26 + (std::toupper(static_cast<unsigned char>(address[i++])) - 'A' + 1);
        if (i == letters) throw std::invalid_argument("bad cell address");
        if (i < address.size() && address[i] == '$') ++i;
        const size_t digits = i;
        while (i < address.size() && std::isdigit(static_cast<unsigned char>(address[i]))) row = row * 10 + (address[i++] - '0');
        if (i == digits || i != address.size() || row < 1) throw std::invalid_argument("bad cell address");
        out.column = column - 1;
        out.row = row - 1;
        return out;
    }
    ss::src_range_t resolve_range(std::string_view range) override {
        const size_t colon = range.find(':');
        if (colon == std::string_view::npos) {
            const auto a = resolve_address(range);
            return {a, a};
        }
        return {resolve_address(range.substr(0, colon)), resolve_address(range.substr(colon + 1))};
    }
};

// Reads only the first sheet; later sheets go to a sink that keeps nothing.
class Factory final : public ss::iface::import_factory {
public:
    SheetData data;
    SharedStrings strings;
    ss::iface::import_shared_strings* get_shared_strings() override { return &strings; }
    ss::iface::import_reference_resolver* get_reference_resolver(ss::formula_ref_context_t) override {
        return &references_;
    }
    ss::iface::import_sheet* append_sheet(ss::sheet_t index, std::string_view) override {
        sheets_.push_back(std::make_unique<Sheet>(index == 0 ? data : ignored_));
        return sheets_.back().get();
    }
    ss::iface::import_sheet* get_sheet(std::string_view) override { return sheets_.empty() ? nullptr : sheets_[0].get(); }
    ss::iface::import_sheet* get_sheet(ss::sheet_t index) override {
        return index >= 0 && size_t(index) < sheets_.size() ? sheets_[size_t(index)].get() : nullptr;
    }
    void finalize() override {}

private:
    References references_;
    SheetData ignored_;
    std::vector<std::unique_ptr<Sheet>> sheets_;
};

void refuseSpecials(const QString& firstMerge, const QString& firstFormula) {
    if (!firstMerge.isEmpty())
        throw SheetError("表格中有合并单元格(" + firstMerge + "),请取消合并,每行每列各填一个值后再导入!");
    if (!firstFormula.isEmpty())
        throw SheetError("表格中有公式(单元格 " + firstFormula + "),请复制后[选择性粘贴]为数值再导入!");
}

QString notReadable(const QString& fileName, const QString& kind) {
    return "文件 " + QFileInfo(fileName).fileName() + " 不是有效的" + kind + "文件,或文件已损坏,无法读取!";
}

}  // namespace

QString cellName(int row, int column) {
    QString letters;
    for (int c = column + 1; c > 0; c = (c - 1) / 26) letters.prepend(QChar('A' + (c - 1) % 26));
    return letters + QString::number(row + 1);
}

SheetRows readXlsx(const QString& fileName) {
    Factory factory;
    try {
        orcus::orcus_xlsx reader(&factory);
        if (qEnvironmentVariableIsSet("QXCK_ORCUS_DEBUG")) {
            orcus::config config(orcus::format_t::xlsx);
            config.debug = true;
            reader.set_config(config);
        }
        reader.read_file(QFile::encodeName(fileName).toStdString());
    } catch (const std::exception& e) {
        if (qEnvironmentVariableIsSet("QXCK_ORCUS_DEBUG")) qWarning("orcus: %s", e.what());
        throw SheetError(notReadable(fileName, " Excel (.xlsx) "));
    }
    SheetData& d = factory.data;
    for (size_t i = 0; i < d.stringCells.size(); ++i) {
        const size_t index = d.stringIndexes[i];
        const std::string& s = index < factory.strings.strings.size() ? factory.strings.strings[index] : std::string();
        put(d.rows, d.stringCells[i].first, d.stringCells[i].second,
            Cell{QString::fromUtf8(s.data(), qsizetype(s.size())), false});
    }
    refuseSpecials(d.firstMerge, d.firstFormula);
    return std::move(d.rows);
}

SheetRows readXls(const QString& fileName) {
    const void* handle = nullptr;
    if (freexl_open(QFile::encodeName(fileName).constData(), &handle) != FREEXL_OK) {
        if (handle) freexl_close(handle);
        throw SheetError(notReadable(fileName, " Excel 97-2003 (.xls) "));
    }
    struct Closer {
        const void* h;
        ~Closer() { freexl_close(h); }
    } closer{handle};
    unsigned int rows = 0;
    unsigned short columns = 0;
    if (freexl_select_active_worksheet(handle, 0) != FREEXL_OK ||
        freexl_worksheet_dimensions(handle, &rows, &columns) != FREEXL_OK)
        throw SheetError(notReadable(fileName, " Excel 97-2003 (.xls) "));
    SheetRows out;
    for (unsigned int r = 0; r < rows; ++r) {
        for (unsigned short c = 0; c < columns; ++c) {
            FreeXL_CellValue value;
            if (freexl_get_cell_value(handle, r, c, &value) != FREEXL_OK)
                throw SheetError(notReadable(fileName, " Excel 97-2003 (.xls) "));
            switch (value.type) {
                case FREEXL_CELL_INT:
                    put(out, int(r), c, Cell{QString::number(value.value.int_value), true});
                    break;
                case FREEXL_CELL_DOUBLE:
                    put(out, int(r), c, Cell{numberText(value.value.double_value), true});
                    break;
                case FREEXL_CELL_TEXT:
                case FREEXL_CELL_SST_TEXT:
                case FREEXL_CELL_DATE:
                case FREEXL_CELL_DATETIME:
                case FREEXL_CELL_TIME:
                    put(out, int(r), c, Cell{QString::fromUtf8(value.value.text_value), false});
                    break;
                default:
                    break;
            }
        }
    }
    return out;
}

SheetRows readCsv(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) throw SheetError("无法打开文件 " + QFileInfo(fileName).fileName() + "!");
    const QByteArray bytes = file.readAll();
    if (bytes.contains('\0')) throw SheetError(notReadable(fileName, " CSV "));
    // UTF-8 (with or without a byte-order mark), else GB18030: what a spreadsheet program on a
    // Chinese system writes as "CSV (逗号分隔)".
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(bytes);
    if (utf8.hasError()) {
        QStringDecoder gb("GB18030", QStringDecoder::Flag::Stateless);
        text = gb.isValid() ? QString(gb.decode(bytes)) : QString();
        if (!gb.isValid() || gb.hasError())
            throw SheetError("文件 " + QFileInfo(fileName).fileName() +
                             " 的文字编码无法识别,请另存为[CSV UTF-8]后再导入!");
    }
    SheetRows out;
    std::vector<Cell> row;
    QString field;
    bool quoted = false, wasQuoted = false;
    qsizetype i = text.startsWith(QChar(0xFEFF)) ? 1 : 0;
    const auto endField = [&] {
        bool isNumber = false;
        if (!wasQuoted) field.toDouble(&isNumber);
        row.push_back(Cell{field, isNumber && !field.trimmed().isEmpty() && field == field.trimmed()});
        field.clear();
        wasQuoted = false;
    };
    const auto endRow = [&] {
        endField();
        out.push_back(std::move(row));
        row.clear();
    };
    for (; i < text.size(); ++i) {
        const QChar ch = text[i];
        if (quoted) {
            if (ch == '"') {
                if (i + 1 < text.size() && text[i + 1] == '"') {
                    field += '"';
                    ++i;
                } else {
                    quoted = false;
                }
            } else {
                field += ch;
            }
        } else if (ch == '"' && field.isEmpty()) {
            quoted = wasQuoted = true;
        } else if (ch == ',') {
            endField();
        } else if (ch == '\r' || ch == '\n') {
            if (ch == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
            endRow();
        } else {
            field += ch;
        }
    }
    if (quoted) throw SheetError("CSV 文件在引号内结束(文件不完整),请检查后再导入!");
    if (!field.isEmpty() || !row.empty()) endRow();
    return out;
}

SheetRows readSheet(const QString& fileName) {
    if (!QFileInfo::exists(fileName)) throw SheetError("文件 " + fileName + " 不存在!");
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == "xlsx") return readXlsx(fileName);
    if (suffix == "xls") return readXls(fileName);
    if (suffix == "csv") return readCsv(fileName);
    throw SheetError("只能导入 Excel (.xlsx / .xls) 或 CSV (.csv) 文件!");
}

}  // namespace qx::setup
