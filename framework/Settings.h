#pragma once
// Settings kept in the program folder.
//
// How screens use it
//   qx::settings::DialogOptions opts(this);                 // INI named after G_CoName
//   opts.save("KH_ID", KH_ID->text());  KH_ID->setText(opts.load("KH_ID").toString());
//   qx::settings::saveControls(this, {"KH_ID", "CK_ID"});  // by objectName
//   QSettings vardo(qx::settings::programFile("VARDO.DLL"), QSettings::IniFormat);  // hang tags
//
// The program folder is the application's folder; tests point it elsewhere with
// setProgramFolder (or the environment variable QXCK_PROGRAM_DIR).
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>

#include "framework/Export.h"

class QWidget;

namespace qx::settings {

QX_FRAMEWORK_EXPORT QString programFolder();
QX_FRAMEWORK_EXPORT void setProgramFolder(const QString& folder);  // empty: back to the default
// A file in the program folder.
QX_FRAMEWORK_EXPORT QString programFile(const QString& name);
// An INI file of the program folder ("VARDO.DLL" keeps the hang-tag source in section "sys").
QX_FRAMEWORK_EXPORT std::unique_ptr<QSettings> openProgramIni(const QString& name);
// The dialog-options INI file: "{G_CoName}.ini" ("QXCK.ini" when no company name is set).
QX_FRAMEWORK_EXPORT QString dialogOptionsFile();

// Options of one dialog: section = the dialog's objectName (or the given section).
class QX_FRAMEWORK_EXPORT DialogOptions {
public:
    explicit DialogOptions(const QWidget* dialog);
    explicit DialogOptions(const QString& section);
    void save(const QString& key, const QVariant& value);
    QVariant load(const QString& key, const QVariant& fallback = {}) const;
    void sync();

private:
    QString section_;
    std::unique_ptr<QSettings> ini_;
};

// Saves / restores the value of named child controls (line edits, date edits, check boxes,
// combo boxes, spin boxes) of a dialog.
QX_FRAMEWORK_EXPORT void saveControls(const QWidget* dialog, const QStringList& names);
QX_FRAMEWORK_EXPORT void loadControls(QWidget* dialog, const QStringList& names);

}  // namespace qx::settings
