#include "framework/Controls.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QStyle>

#include "framework/LinkForms.h"
#include "framework/U_function.h"

// ---------------------------------------------------------------- TDateEdit

TDateEdit::TDateEdit(QWidget* parent) : QDateEdit(parent) {
    setDisplayFormat("yyyy-MM-dd");
    setCalendarPopup(true);
    setDate(QDate::currentDate());
}

AnsiString TDateEdit::Text() const { return date().toString("yyyy-MM-dd"); }

void TDateEdit::SetText(const AnsiString& text) {
    const QString t = text.trimmed().left(10);
    QDate d = QDate::fromString(t, "yyyy-MM-dd");
    if (!d.isValid()) d = QDate::fromString(t, "yyyy/MM/dd");
    if (d.isValid()) setDate(d);
}

// ---------------------------------------------------------------- TLinkEdit

TLinkEdit::TLinkEdit(QWidget* parent) : QLineEdit(parent) {
    QAction* button = addAction(style()->standardIcon(QStyle::SP_FileDialogContentsView),
                                QLineEdit::TrailingPosition);
    button->setObjectName("Button");
    button->setToolTip(tr("选择 (F4)"));
    connect(button, &QAction::triggered, this, [this] { qx::guard([this] { ButtonClick(); }); });
    // A code being typed is not yet the named one: the old name goes at once.
    connect(this, &QLineEdit::textEdited, this, [this] {
        if (nameLabel_) nameLabel_->clear();
    });
}

void TLinkEdit::ButtonClick() {
    emit buttonClicked();
    if (OnButtonClick) OnButtonClick(this);
    else if (linkForm_) linkForm_->Show();
}

void TLinkEdit::CheckId() {
    const QString code = text().trimmed();
    if (code.isEmpty()) {
        if (nameLabel_) nameLabel_->clear();
        return;
    }
    if (!linkForm_) return;
    const QString name = linkForm_->NameOf(code);
    if (name.isNull()) {
        if (nameLabel_) nameLabel_->clear();  // never the name of the code typed over
        DISPINFO((Caption.isEmpty() ? objectName() : Caption.simplified()) + "代码 " + code + " 不存在!", 5);
        setFocus();
        selectAll();
        Abort();
    }
    if (nameLabel_) nameLabel_->setText(name);
}

void TLinkEdit::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F4) {
        qx::guard([this] { ButtonClick(); });
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void TLinkEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    // Leaving for the pick list itself is not leaving the edit.
    if (!CheckOnExit || checking_ || !isModified()) return;
    if (linkForm_ && linkForm_->isVisible()) return;
    checking_ = true;
    if (qx::guard([this] { CheckId(); })) setModified(false);
    checking_ = false;
}

// ---------------------------------------------------------------- TFormPanel

TFormPanel::TFormPanel(QWidget* parent, const QString& objectName, int pairsPerRow)
    : QWidget(parent), grid_(new QGridLayout(this)), pairsPerRow_(pairsPerRow) {
    setObjectName(objectName);
    grid_->setContentsMargins(6, 6, 6, 6);
    grid_->setHorizontalSpacing(6);
    grid_->setVerticalSpacing(4);
}

void TFormPanel::place(QWidget* control, const QString& caption, int span) {
    if (pair_ + span > pairsPerRow_ && pair_ > 0) NewRow();
    const int column = pair_ * 3;
    if (!caption.isNull()) {
        auto* label = new QLabel(caption, this);
        label->setObjectName("Lab_" + control->objectName());
        label->setBuddy(control);
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid_->addWidget(label, row_, column);
        control->setProperty("qx_caption", caption);
    }
    grid_->addWidget(control, row_, column + 1, 1, span * 3 - 1);
    pair_ += span;
    if (pair_ >= pairsPerRow_) NewRow();
}

void TFormPanel::NewRow() {
    if (pair_ == 0) return;
    ++row_;
    pair_ = 0;
}

QLineEdit* TFormPanel::AddEdit(const QString& name, const QString& caption, int maxLength) {
    auto* e = new QLineEdit(this);
    e->setObjectName(name);
    if (maxLength > 0) e->setMaxLength(maxLength);
    place(e, caption, 1);
    return e;
}

TLinkEdit* TFormPanel::AddLinkEdit(const QString& name, const QString& caption, int maxLength,
                                   const QString& nameLabel) {
    auto* box = new QWidget(this);
    box->setObjectName(name + "_Box");
    auto* h = new QHBoxLayout(box);
    h->setContentsMargins(0, 0, 0, 0);
    auto* e = new TLinkEdit(box);
    e->setObjectName(name);
    e->Caption = caption;
    if (maxLength > 0) e->setMaxLength(maxLength);
    h->addWidget(e, 2);
    if (!nameLabel.isEmpty()) {
        auto* l = new QLabel(box);
        l->setObjectName(nameLabel);
        l->setFrameShape(QFrame::StyledPanel);
        l->setMinimumWidth(80);
        h->addWidget(l, 3);
        e->SetNameLabel(l);
    }
    if (pair_ + 1 > pairsPerRow_ && pair_ > 0) NewRow();
    auto* label = new QLabel(caption, this);
    label->setObjectName("Lab_" + name);
    label->setBuddy(e);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    e->setProperty("qx_caption", caption);
    grid_->addWidget(label, row_, pair_ * 3);
    grid_->addWidget(box, row_, pair_ * 3 + 1, 1, 2);
    if (++pair_ >= pairsPerRow_) NewRow();
    return e;
}

TDateEdit* TFormPanel::AddDateEdit(const QString& name, const QString& caption) {
    auto* d = new TDateEdit(this);
    d->setObjectName(name);
    place(d, caption, 1);
    return d;
}

QLabel* TFormPanel::AddLabel(const QString& name, const QString& caption) {
    auto* l = new QLabel(this);
    l->setObjectName(name);
    place(l, caption, 1);
    return l;
}

QCheckBox* TFormPanel::AddCheckBox(const QString& name, const QString& caption) {
    auto* c = new QCheckBox(caption, this);
    c->setObjectName(name);
    place(c, QString(), 1);
    return c;
}

QComboBox* TFormPanel::AddComboBox(const QString& name, const QString& caption, const QStringList& items) {
    auto* c = new QComboBox(this);
    c->setObjectName(name);
    c->addItems(items);
    place(c, caption, 1);
    return c;
}

void TFormPanel::AddControl(QWidget* control, const QString& caption, int span) {
    control->setParent(this);
    place(control, caption, span);
}

QLabel* TFormPanel::CaptionOf(const QWidget* control) const {
    for (QLabel* l : findChildren<QLabel*>())
        if (l->buddy() == control) return l;
    return nullptr;
}
