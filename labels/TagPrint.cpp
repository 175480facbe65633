#include "labels/TagPrint.h"

#include <zint.h>

#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <memory>

#include "framework/DataSet.h"
#include "framework/Settings.h"
#include "framework/U_function.h"

namespace qx::labels {

namespace {

constexpr const char* kOptionsSection = "QXCK299P";
constexpr double kA4WidthMm = 210.0;
constexpr double kA4HeightMm = 297.0;

struct SymbolDeleter {
    void operator()(zint_symbol* s) const { ZBarcode_Delete(s); }
};

QString priceText(const QVariant& value) {
    if (value.isNull() || !value.isValid()) return {};
    return QString::number(value.toDouble(), 'f', 2);
}

void paintPage(QPainter& painter, double mm, const std::vector<HangTag>& tags, const TagLayout& layout,
               const PageGrid& grid, int page) {
    const int first = page * grid.perPage();
    for (int i = 0; i < grid.perPage() && first + i < int(tags.size()); ++i) {
        const QRectF r = TagRectMm(layout, grid, i);
        DrawTag(painter, QRectF(r.x() * mm, r.y() * mm, r.width() * mm, r.height() * mm), mm, tags[size_t(first + i)]);
    }
}

}  // namespace

std::vector<HangTag> TagsOf(TClientDataSet* list) {
    std::vector<HangTag> tags;
    list->CheckBrowseMode();
    const auto text = [list](int row, const char* field) {
        const int i = list->FieldIndex(field);
        return i < 0 ? QString() : list->CellValue(row, i).toString();
    };
    const int price = list->FieldIndex("PFJ");
    for (int row = 0; row < list->RecordCount(); ++row)
        tags.push_back({text(row, "tm"), text(row, "K_ID"), text(row, "WL_NAME"), text(row, "COL_NAME"), text(row, "M"),
                        text(row, "PP"), price < 0 ? QString() : priceText(list->CellValue(row, price)), text(row, "cl")});
    return tags;
}

TagLayout LoadTagLayout() {
    const qx::settings::DialogOptions options{QString(kOptionsSection)};
    TagLayout layout;
    layout.widthMm = std::clamp(options.load("WidthMm", layout.widthMm).toDouble(), 20.0, 190.0);
    layout.heightMm = std::clamp(options.load("HeightMm", layout.heightMm).toDouble(), 20.0, 277.0);
    layout.columns = std::clamp(options.load("Columns", layout.columns).toInt(), 1, 9);
    return layout;
}

void SaveTagLayout(const TagLayout& layout) {
    qx::settings::DialogOptions options{QString(kOptionsSection)};
    options.save("WidthMm", layout.widthMm);
    options.save("HeightMm", layout.heightMm);
    options.save("Columns", layout.columns);
    options.sync();
}

bool IsValidEan13(const QString& code) {
    if (code.size() != 13) return false;
    int sum = 0;
    for (int i = 0; i < 13; ++i) {
        if (!code[i].isDigit() || code[i].unicode() > '9') return false;
        if (i < 12) sum += (code[i].unicode() - '0') * (i % 2 ? 3 : 1);
    }
    return (10 - sum % 10) % 10 == code[12].unicode() - '0';
}

Symbology SymbologyFor(const QString& code) {
    if (code.isEmpty()) return Symbology::None;
    return IsValidEan13(code) ? Symbology::Ean13 : Symbology::Code128;
}

bool DrawBarcode(QPainter& painter, const QRectF& rect, const QString& code, QString* error) {
    const Symbology kind = SymbologyFor(code);
    if (kind == Symbology::None) return false;
    std::unique_ptr<zint_symbol, SymbolDeleter> symbol(ZBarcode_Create());
    symbol->symbology = kind == Symbology::Ean13 ? BARCODE_EANX : BARCODE_CODE128;
    symbol->input_mode = UNICODE_MODE;
    symbol->show_hrt = 0;
    symbol->output_options |= BARCODE_QUIET_ZONES;
    // EAN-13 is encoded from its first twelve digits; zint adds the check digit.
    const QByteArray data = (kind == Symbology::Ean13 ? code.left(12) : code).toUtf8();
    const int rc = ZBarcode_Encode(symbol.get(), reinterpret_cast<const unsigned char*>(data.constData()), int(data.size()));
    if (rc >= ZINT_ERROR) {
        if (error) *error = QString::fromUtf8(symbol->errtxt);
        return false;
    }
    if (ZBarcode_Buffer_Vector(symbol.get(), 0) >= ZINT_ERROR || !symbol->vector) {
        if (error) *error = QString::fromUtf8(symbol->errtxt);
        return false;
    }
    const zint_vector* v = symbol->vector;
    const double sx = rect.width() / v->width;
    const double sy = rect.height() / v->height;
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    for (const zint_vector_rect* r = v->rectangles; r; r = r->next) {
        if (r->colour != -1 && r->colour != 7) continue;  // foreground (black) bars only
        painter.drawRect(QRectF(rect.x() + r->x * sx, rect.y() + r->y * sy, r->width * sx, r->height * sy));
    }
    painter.restore();
    return true;
}

void DrawTag(QPainter& painter, const QRectF& rect, double mm, const HangTag& tag) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(QColor(150, 150, 150), std::max(1.0, 0.2 * mm)));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(rect, 2 * mm, 2 * mm);
    // The hole for the string.
    painter.drawEllipse(QPointF(rect.center().x(), rect.top() + 4 * mm), 1.5 * mm, 1.5 * mm);

    const double pad = 3 * mm;
    const QRectF inner = rect.adjusted(pad, 7 * mm, -pad, -pad);
    QFont font("WenQuanYi Zen Hei");
    font.setStyleHint(QFont::SansSerif);
    painter.setPen(Qt::black);

    double y = inner.top();
    const auto line = [&](const QString& text, double sizeMm, bool bold, Qt::Alignment align) {
        font.setPixelSize(std::max(1, int(sizeMm * mm)));
        font.setBold(bold);
        painter.setFont(font);
        const double h = sizeMm * mm * 1.45;
        painter.drawText(QRectF(inner.left(), y, inner.width(), h), int(align | Qt::AlignVCenter),
                         painter.fontMetrics().elidedText(text, Qt::ElideRight, int(inner.width())));
        y += h;
    };
    const double barcodeHeight = std::min(18 * mm, inner.height() * 0.35);
    const double textHeight = 3.2 * mm * 1.4;
    if (!tag.brand.isEmpty()) line(tag.brand, 4.2, true, Qt::AlignHCenter);
    line("款号：" + tag.style, 3.0, false, Qt::AlignLeft);
    line("品名：" + tag.name, 3.0, false, Qt::AlignLeft);
    line("颜色：" + tag.colour, 3.0, false, Qt::AlignLeft);
    line("尺码：" + tag.size, 3.0, false, Qt::AlignLeft);
    if (!tag.composition.isEmpty()) line("成份：" + tag.composition, 3.0, false, Qt::AlignLeft);
    if (!tag.price.isEmpty()) line("零售价 ¥" + tag.price, 4.2, true, Qt::AlignLeft);

    const QRectF bars(inner.left(), inner.bottom() - textHeight - barcodeHeight, inner.width(), barcodeHeight);
    QString problem;
    if (!tag.barcode.isEmpty() && !DrawBarcode(painter, bars, tag.barcode, &problem)) {
        font.setPixelSize(std::max(1, int(2.4 * mm)));
        font.setBold(false);
        painter.setFont(font);
        painter.drawText(bars, Qt::AlignCenter | Qt::TextWordWrap, "条码无法打印：" + problem);
    }
    font.setPixelSize(std::max(1, int(3.2 * mm)));
    font.setBold(false);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.3 * mm);
    painter.setFont(font);
    painter.drawText(QRectF(inner.left(), inner.bottom() - textHeight, inner.width(), textHeight), Qt::AlignCenter,
                     tag.barcode);
    painter.restore();
}

PageGrid PageGridFor(const TagLayout& layout, double pageWidthMm, double pageHeightMm) {
    PageGrid grid;
    const double usableW = pageWidthMm - 2 * layout.marginMm + layout.gapMm;
    const double usableH = pageHeightMm - 2 * layout.marginMm + layout.gapMm;
    grid.columns = std::max(1, std::min(layout.columns, int(usableW / (layout.widthMm + layout.gapMm))));
    grid.rows = std::max(1, int(usableH / (layout.heightMm + layout.gapMm)));
    grid.leftMm = std::max(0.0, (pageWidthMm - grid.columns * (layout.widthMm + layout.gapMm) + layout.gapMm) / 2);
    grid.topMm = layout.marginMm;
    return grid;
}

QRectF TagRectMm(const TagLayout& layout, const PageGrid& grid, int indexOnPage) {
    const int row = indexOnPage / grid.columns;
    const int column = indexOnPage % grid.columns;
    return {grid.leftMm + column * (layout.widthMm + layout.gapMm), grid.topMm + row * (layout.heightMm + layout.gapMm),
            layout.widthMm, layout.heightMm};
}

int PageCount(const TagLayout& layout, int tagCount, double pageWidthMm, double pageHeightMm) {
    const PageGrid grid = PageGridFor(layout, pageWidthMm, pageHeightMm);
    return (tagCount + grid.perPage() - 1) / grid.perPage();
}

void CheckLayoutFits(const TagLayout& layout, double pageWidthMm, double pageHeightMm) {
    if (layout.columns * layout.widthMm + (layout.columns - 1) * layout.gapMm > pageWidthMm - 2 * layout.marginMm) {
        DISPINFO("吊牌宽度乘以每行张数超出了纸张宽度!", 5);
        Abort();
    }
    if (layout.heightMm > pageHeightMm - 2 * layout.marginMm) {
        DISPINFO("吊牌高度超出了纸张高度!", 5);
        Abort();
    }
}

void PaintTags(QPagedPaintDevice* device, const std::vector<HangTag>& tags, const TagLayout& layout) {
    const QRectF page = device->pageLayout().fullRect(QPageLayout::Millimeter);
    const PageGrid grid = PageGridFor(layout, page.width(), page.height());
    const int pages = PageCount(layout, int(tags.size()), page.width(), page.height());
    QPainter painter(device);
    const double mm = device->logicalDpiX() / 25.4;
    for (int p = 0; p < pages; ++p) {
        if (p > 0) device->newPage();
        paintPage(painter, mm, tags, layout, grid, p);
    }
}

QImage RenderTagPage(const std::vector<HangTag>& tags, const TagLayout& layout, int page, int dpi) {
    const double mm = dpi / 25.4;
    QImage image(int(kA4WidthMm * mm), int(kA4HeightMm * mm), QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setDotsPerMeterX(int(dpi / 0.0254));
    image.setDotsPerMeterY(int(dpi / 0.0254));
    QPainter painter(&image);
    paintPage(painter, mm, tags, layout, PageGridFor(layout, kA4WidthMm, kA4HeightMm), page);
    return image;
}

void WriteTagsPdf(const QString& fileName, const std::vector<HangTag>& tags, const TagLayout& layout) {
    QPdfWriter pdf(fileName);
    pdf.setResolution(600);
    pdf.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
    pdf.setCreator("QX_CK");
    pdf.setTitle("吊牌");
    PaintTags(&pdf, tags, layout);
    if (!QFileInfo(fileName).exists() || QFileInfo(fileName).size() == 0)
        throw EDatabaseError("无法写入文件 " + fileName);
}

// ---------------------------------------------------------------- the dialog

TagPrintDialog::TagPrintDialog(QWidget* Owner, TClientDataSet* list) : TFrm_Base_Dialog(Owner), list_(list) {
    setObjectName(kOptionsSection);
    SetCaption("吊牌打印");
    WidthMm = new QDoubleSpinBox(Panel_Condition);
    WidthMm->setObjectName("WidthMm");
    WidthMm->setRange(20, 190);
    WidthMm->setDecimals(1);
    WidthMm->setSuffix(" mm");
    Panel_Condition->AddControl(WidthMm, "吊牌宽度");
    HeightMm = new QDoubleSpinBox(Panel_Condition);
    HeightMm->setObjectName("HeightMm");
    HeightMm->setRange(20, 277);
    HeightMm->setDecimals(1);
    HeightMm->setSuffix(" mm");
    Panel_Condition->AddControl(HeightMm, "吊牌高度");
    Panel_Condition->NewRow();
    Columns = new QSpinBox(Panel_Condition);
    Columns->setObjectName("Columns");
    Columns->setRange(1, 9);
    Panel_Condition->AddControl(Columns, "每行张数");
    Panel_Condition->NewRow();
    PdfFile = Panel_Condition->AddEdit("PdfFile", "PDF文件");
    btn_Browse = new QPushButton("...", Panel_Condition);
    btn_Browse->setObjectName("btn_Browse");
    Panel_Condition->AddControl(btn_Browse, QString());

    auto* buttons = new QHBoxLayout;
    btn_Preview = new QPushButton("预览", this);
    btn_Preview->setObjectName("btn_Preview");
    btn_Print = new QPushButton("打印", this);
    btn_Print->setObjectName("btn_Print");
    btn_Pdf = new QPushButton("输出PDF", this);
    btn_Pdf->setObjectName("btn_Pdf");
    for (QPushButton* b : {btn_Preview, btn_Print, btn_Pdf}) buttons->addWidget(b);
    buttons->addStretch(1);
    MainLayout()->insertLayout(MainLayout()->indexOf(Panel_Condition) + 1, buttons);
    btn_ok->hide();
    btn_cancel->setText("关闭");

    const TagLayout layout = LoadTagLayout();
    WidthMm->setValue(layout.widthMm);
    HeightMm->setValue(layout.heightMm);
    Columns->setValue(layout.columns);
    PdfFile->setText(qx::settings::DialogOptions(this).load("PdfFile").toString());

    qx::connectGuarded(btn_Preview, &QPushButton::clicked, this, [this] { btn_PreviewClick(btn_Preview); });
    qx::connectGuarded(btn_Print, &QPushButton::clicked, this, [this] { btn_PrintClick(btn_Print); });
    qx::connectGuarded(btn_Pdf, &QPushButton::clicked, this, [this] { btn_PdfClick(btn_Pdf); });
    qx::connectGuarded(btn_Browse, &QPushButton::clicked, this, [this] { btn_BrowseClick(btn_Browse); });
}

TagLayout TagPrintDialog::Layout() const {
    TagLayout layout;
    layout.widthMm = WidthMm->value();
    layout.heightMm = HeightMm->value();
    layout.columns = Columns->value();
    return layout;
}

// The tags to print once the layout is known to fit; the layout is remembered.
std::vector<HangTag> TagPrintDialog::checkedTags() {
    std::vector<HangTag> tags = TagsOf(list_);
    if (tags.empty()) {
        DISPINFO("没有可打印的吊牌!", 5);
        Abort();
    }
    CheckLayoutFits(Layout(), kA4WidthMm, kA4HeightMm);
    SaveTagLayout(Layout());
    return tags;
}

// Printers print whole A4 pages: the tags place themselves inside the page's margin.
static void setUpPrinter(QPrinter& printer) {
    printer.setFullPage(true);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setDocName("吊牌");
}

void TagPrintDialog::btn_PreviewClick(QObject*) {
    const std::vector<HangTag> tags = checkedTags();
    QPrinter printer(QPrinter::HighResolution);
    setUpPrinter(printer);
    QPrintPreviewDialog preview(&printer, this);
    preview.setWindowTitle("吊牌预览");
    const TagLayout layout = Layout();
    connect(&preview, &QPrintPreviewDialog::paintRequested, this,
            [&](QPrinter* p) { qx::guard([&] { PaintTags(p, tags, layout); }); });
    preview.exec();
}

void TagPrintDialog::btn_PrintClick(QObject*) {
    const std::vector<HangTag> tags = checkedTags();
    QPrinter printer(QPrinter::HighResolution);
    setUpPrinter(printer);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() != QDialog::Accepted) return;
    PaintTags(&printer, tags, Layout());
}

void TagPrintDialog::btn_PdfClick(QObject*) {
    const QString file = PdfFile->text().trimmed();
    if (file.isEmpty()) {
        DISPINFO("请输入PDF文件名!", 5);
        PdfFile->setFocus();
        Abort();
    }
    const std::vector<HangTag> tags = checkedTags();
    WriteTagsPdf(file, tags, Layout());
    qx::settings::DialogOptions(this).save("PdfFile", file);
    DISPINFO("已输出" + QString::number(tags.size()) + "张吊牌到 " + file, 5);
}

void TagPrintDialog::btn_BrowseClick(QObject*) {
    const QString file = QFileDialog::getSaveFileName(this, "PDF文件", PdfFile->text(), "PDF (*.pdf)");
    if (!file.isEmpty()) PdfFile->setText(file);
}

void ShowTagPrintDialog(QWidget* owner, TClientDataSet* list) {
    auto* dialog = new TagPrintDialog(owner, list);
    dialog->ShowModal();
    dialog->Release();
}

void PreviewTags(QWidget* owner, TClientDataSet* list) {
    auto* dialog = new TagPrintDialog(owner, list);
    qx::guard([dialog] { dialog->btn_PreviewClick(dialog->btn_Preview); });
    dialog->Release();
}

}  // namespace qx::labels
