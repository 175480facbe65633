#pragma once
// Entry by size ratio: garment buyers order and count in packs ("1:2:2:1 of S–XL, 12 packs").
// A ratio text "1:2:2:1*12" (":" or "：" between the sizes, "*", "×" or "x" before the pack
// count; no pack count means one pack) gives the quantity of each size position from the first
// one of the line's size group: 12, 24, 24, 12.
//
// In every entry screen with a size grid the text is typed into the line's total cell (STOT),
// or built in the small dialog of the "配比" action (TFrm_Sys_SizeRatio); the line then holds
// the same quantities a clerk would have typed size by size.
#include <QString>
#include <QStringList>
#include <QVector>

#include "framework/Frm_Base.h"

namespace qx::sizes {

// A text meant as a ratio rather than a number: it has a ratio or pack separator.
QX_FRAMEWORK_EXPORT bool looksLikeRatio(const QString& text);

struct RatioResult {
    QVector<int> quantities;  // per size position, as many as the ratio has parts
    QString error;            // the message for the clerk; empty when the ratio is good
    bool ok() const { return error.isEmpty(); }
};

// The quantities of a ratio for a size group with these size names (M0..M9: a position the
// group does not name takes no quantity).
QX_FRAMEWORK_EXPORT RatioResult parseRatio(const QString& text, const QStringList& sizeNames);

}  // namespace qx::sizes

class Tfrm_Base_Entry_Body;

// The small dialog of the "配比" action: the ratio over the line's sizes and the pack count.
class QX_FRAMEWORK_EXPORT TFrm_Sys_SizeRatio : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit TFrm_Sys_SizeRatio(QWidget* Owner = nullptr);
    // Shows the sizes of the current line of `entry` (the dialog fills that line on OK).
    void InitForm(Tfrm_Base_Entry_Body* entry, const QStringList& sizeNames);
    void btn_okClick(QObject* Sender) override;
    // The ratio text OK hands to the line: "{ratio}*{packs}".
    AnsiString RatioText() const;

    QLabel* Lab_Sizes;  // "S:M:L:XL"
    QLineEdit* Edit_Ratio;
    QLineEdit* Edit_Packs;

private:
    Tfrm_Base_Entry_Body* entry_ = nullptr;
};
