#pragma once
// Edit controls of the screens and a panel that lays them out in labelled rows.
//
// How screens use it
//   Edit1    = Panel_Head->AddEdit("Edit1", "进货单号", 12);
//   KH_GYS_ID = Panel_Head->AddLinkEdit("KH_GYS_ID", "供 应 商", 10, "KG_NAME");
//   BDATE    = Panel_Head->AddDateEdit("BDATE", "开单日期");
//   EDATE    = Panel_Head->AddLabel("EDATE", "更改日期");
//   KH_GYS_ID->OnButtonClick = [this](QObject* s) { KH_GYS_IDButtonClick(s); };
//   KH_GYS_ID->NameLabel()->setText("...");
//
// Every control carries the objectName it was given, so scripts and tests find it by name.
// TDateEdit shows and takes "YYYY-MM-DD" text (property "text", like a line edit).
// TLinkEdit is a line edit with a lookup button (F4 or the button opens its pick list), a
// companion name label, and an optional check of a typed code when the edit is left.
#include <QDate>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>
#include <functional>

#include "framework/Export.h"
#include "framework/Types.h"

class QGridLayout;
class QCheckBox;
class QComboBox;
class QPushButton;
class TFrm_Sys_LINK;

using TEdit = QLineEdit;
using TLabel = QLabel;

class QX_FRAMEWORK_EXPORT TDateEdit : public QDateEdit {
    Q_OBJECT
    Q_PROPERTY(QString text READ Text WRITE SetText USER true)
public:
    explicit TDateEdit(QWidget* parent = nullptr);
    AnsiString Text() const;  // "YYYY-MM-DD"
    void SetText(const AnsiString& text);  // "YYYY-MM-DD" (or "YYYY-MM-DD hh:mm:ss"); bad text is ignored
    QDate Date() const { return date(); }
    void SetDate(const QDate& d) { setDate(d); }
};

class QX_FRAMEWORK_EXPORT TLinkEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit TLinkEdit(QWidget* parent = nullptr);

    // The pick list attached to this edit (set by the pick list's init).
    TFrm_Sys_LINK* LinkForm() const { return linkForm_; }
    void SetLinkForm(TFrm_Sys_LINK* form) { linkForm_ = form; }
    // The label that shows the name of the code (may be null).
    QLabel* NameLabel() const { return nameLabel_; }
    void SetNameLabel(QLabel* label) { nameLabel_ = label; }
    AnsiString Caption;  // for messages ("供 应 商")

    // The button (or F4): runs OnButtonClick when set, else shows the attached pick list.
    std::function<void(QObject* Sender)> OnButtonClick;
    void ButtonClick();
    // Validates the typed code against the pick list's table: an empty code clears the name;
    // a known code fills the name; an unknown one is reported ("{caption}代码 {code} 不存在!"),
    // focused and aborted. Runs when the edit is left if CheckOnExit is set.
    void CheckId();
    bool CheckOnExit = false;

signals:
    void buttonClicked();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    TFrm_Sys_LINK* linkForm_ = nullptr;
    QLabel* nameLabel_ = nullptr;
    bool checking_ = false;
};

// A panel of labelled controls, laid out left to right in rows of PairsPerRow pairs.
class QX_FRAMEWORK_EXPORT TFormPanel : public QWidget {
    Q_OBJECT
public:
    explicit TFormPanel(QWidget* parent = nullptr, const QString& objectName = {}, int pairsPerRow = 3);

    QLineEdit* AddEdit(const QString& name, const QString& caption, int maxLength = 0);
    TLinkEdit* AddLinkEdit(const QString& name, const QString& caption, int maxLength,
                           const QString& nameLabel);
    TDateEdit* AddDateEdit(const QString& name, const QString& caption);
    QLabel* AddLabel(const QString& name, const QString& caption);
    QCheckBox* AddCheckBox(const QString& name, const QString& caption);
    QComboBox* AddComboBox(const QString& name, const QString& caption, const QStringList& items = {});
    // Any control, with a caption label.
    void AddControl(QWidget* control, const QString& caption, int span = 1);
    void NewRow();
    // The caption label of a control added here (nullptr when none).
    QLabel* CaptionOf(const QWidget* control) const;
    QGridLayout* Grid() const { return grid_; }

private:
    void place(QWidget* control, const QString& caption, int span);
    QGridLayout* grid_;
    int pairsPerRow_;
    int row_ = 0;
    int pair_ = 0;
};
