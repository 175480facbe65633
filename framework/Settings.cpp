#include "framework/Settings.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QDateEdit>
#include <QDir>
#include <QLineEdit>
#include <QSpinBox>
#include <QWidget>

#include "framework/U_glo.h"

namespace qx::settings {
namespace {
QString& overrideFolder() {
    static QString folder;
    return folder;
}
}  // namespace

QString programFolder() {
    if (!overrideFolder().isEmpty()) return overrideFolder();
    const QString env = qEnvironmentVariable("QXCK_PROGRAM_DIR");
    if (!env.isEmpty()) return env;
    return QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QDir::currentPath();
}

void setProgramFolder(const QString& folder) { overrideFolder() = folder; }

QString programFile(const QString& name) { return QDir(programFolder()).filePath(name); }

std::unique_ptr<QSettings> openProgramIni(const QString& name) {
    return std::make_unique<QSettings>(programFile(name), QSettings::IniFormat);
}

QString dialogOptionsFile() {
    QString company = G_CoName.trimmed();
    // The company name becomes a file name: characters a file system refuses become "_".
    for (QChar& c : company)
        if (QString("\\/:*?\"<>|").contains(c) || c.unicode() < 32) c = '_';
    return programFile((company.isEmpty() ? QString("QXCK") : company) + ".ini");
}

DialogOptions::DialogOptions(const QWidget* dialog) : DialogOptions(dialog->objectName().isEmpty()
                                                                        ? QString(dialog->metaObject()->className())
                                                                        : dialog->objectName()) {}

DialogOptions::DialogOptions(const QString& section)
    : section_(section), ini_(std::make_unique<QSettings>(dialogOptionsFile(), QSettings::IniFormat)) {}

void DialogOptions::save(const QString& key, const QVariant& value) { ini_->setValue(section_ + "/" + key, value); }

QVariant DialogOptions::load(const QString& key, const QVariant& fallback) const {
    return ini_->value(section_ + "/" + key, fallback);
}

void DialogOptions::sync() { ini_->sync(); }

void saveControls(const QWidget* dialog, const QStringList& names) {
    DialogOptions options(dialog);
    for (const QString& name : names) {
        QWidget* w = dialog->findChild<QWidget*>(name);
        if (!w) continue;
        if (auto* d = qobject_cast<QDateEdit*>(w)) options.save(name, d->date().toString("yyyy-MM-dd"));
        else if (auto* e = qobject_cast<QLineEdit*>(w)) options.save(name, e->text());
        else if (auto* b = qobject_cast<QAbstractButton*>(w)) options.save(name, b->isChecked());
        else if (auto* c = qobject_cast<QComboBox*>(w)) options.save(name, c->currentIndex());
        else if (auto* s = qobject_cast<QSpinBox*>(w)) options.save(name, s->value());
    }
    options.sync();
}

void loadControls(QWidget* dialog, const QStringList& names) {
    DialogOptions options(dialog);
    for (const QString& name : names) {
        QWidget* w = dialog->findChild<QWidget*>(name);
        const QVariant v = options.load(name);
        if (!w || !v.isValid()) continue;
        if (auto* d = qobject_cast<QDateEdit*>(w)) d->setDate(QDate::fromString(v.toString(), "yyyy-MM-dd"));
        else if (auto* e = qobject_cast<QLineEdit*>(w)) e->setText(v.toString());
        else if (auto* b = qobject_cast<QAbstractButton*>(w)) b->setChecked(v.toBool());
        else if (auto* c = qobject_cast<QComboBox*>(w)) c->setCurrentIndex(v.toInt());
        else if (auto* s = qobject_cast<QSpinBox*>(w)) s->setValue(v.toInt());
    }
}

}  // namespace qx::settings
