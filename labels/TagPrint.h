#pragma once
// Printing hang tags: one tag per row of the label list (a count of 3 made three rows, so three
// tags), laid out in columns on the page. A tag shows brand, style, name, colour, size, price
// and the barcode with its text: EAN-13 where the code is 13 digits with a valid check digit,
// Code 128 for every other code, nothing where a tag has no barcode.
//
// How screens use it
//   qx::labels::ShowTagPrintDialog(this, AdoQry_Main);    // size and columns, preview, print, PDF
//   qx::labels::WriteTagsPdf("tags.pdf", qx::labels::TagsOf(list), qx::labels::LoadTagLayout());
//
// The tag size and the columns per page are kept in the dialog-options INI file (section
// "QXCK299P").
#include <QImage>
#include <QRectF>
#include <QString>
#include <vector>

#include "framework/Frm_Base.h"

class QDoubleSpinBox;
class QPainter;
class QPagedPaintDevice;
class QSpinBox;

namespace qx::labels {

struct HangTag {
    QString barcode, style, name, colour, size, brand, price, composition;
};
// One tag per row of the list, in list order.
std::vector<HangTag> TagsOf(TClientDataSet* list);

struct TagLayout {
    double widthMm = 50;
    double heightMm = 80;
    int columns = 3;
    double gapMm = 4;     // between tags
    double marginMm = 10; // page margin
};
TagLayout LoadTagLayout();
void SaveTagLayout(const TagLayout& layout);

enum class Symbology { None, Code128, Ean13 };
Symbology SymbologyFor(const QString& code);
// True when a 13-digit code ends in its EAN check digit.
bool IsValidEan13(const QString& code);

// Draws the bars (no text) of `code` to fill `rect` (quiet zones included). False with the
// reason when the code cannot be encoded.
bool DrawBarcode(QPainter& painter, const QRectF& rect, const QString& code, QString* error = nullptr);
// Draws one tag into `rect` (device units; `mm` = device units per millimetre).
void DrawTag(QPainter& painter, const QRectF& rect, double mm, const HangTag& tag);

// Page geometry for a page of widthMm x heightMm: tags per row and per page, and the rectangle
// (in millimetres from the page's top left) of the i-th tag of a page.
struct PageGrid {
    int columns = 1, rows = 1;
    double leftMm = 0, topMm = 0;  // the block of tags is centred across the page
    int perPage() const { return columns * rows; }
};
PageGrid PageGridFor(const TagLayout& layout, double pageWidthMm, double pageHeightMm);
QRectF TagRectMm(const TagLayout& layout, const PageGrid& grid, int indexOnPage);
int PageCount(const TagLayout& layout, int tagCount, double pageWidthMm, double pageHeightMm);

// Paints every page on a paged device (printer or PDF writer) whose page is pageWidthMm wide.
void PaintTags(QPagedPaintDevice* device, const std::vector<HangTag>& tags, const TagLayout& layout);
// One A4 page as a picture (tests, screenshots).
QImage RenderTagPage(const std::vector<HangTag>& tags, const TagLayout& layout, int page, int dpi);
// Writes the tags as an A4 PDF (throws EDatabaseError when the file cannot be written).
void WriteTagsPdf(const QString& fileName, const std::vector<HangTag>& tags, const TagLayout& layout);
// Checks that tags of this layout fit an A4 page; reports and aborts otherwise.
void CheckLayoutFits(const TagLayout& layout, double pageWidthMm, double pageHeightMm);

// The print dialog of the tag list: tag width and height, columns per page, preview, print, PDF.
class TagPrintDialog : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    TagPrintDialog(QWidget* Owner, TClientDataSet* list);
    void btn_PreviewClick(QObject* Sender);
    void btn_PrintClick(QObject* Sender);
    void btn_PdfClick(QObject* Sender);
    void btn_BrowseClick(QObject* Sender);
    TagLayout Layout() const;

    QDoubleSpinBox* WidthMm;
    QDoubleSpinBox* HeightMm;
    QSpinBox* Columns;
    QLineEdit* PdfFile;
    QPushButton* btn_Browse;
    QPushButton* btn_Preview;
    QPushButton* btn_Print;
    QPushButton* btn_Pdf;

private:
    std::vector<HangTag> checkedTags();
    TClientDataSet* list_;
};

void ShowTagPrintDialog(QWidget* owner, TClientDataSet* list);
void PreviewTags(QWidget* owner, TClientDataSet* list);

}  // namespace qx::labels
