#pragma once
// System initialisation: goods with opening stock, customers, suppliers and members from
// spreadsheets, and the clearing of all documents. Every batch runs under the settings' code
// "901" with mode "B" (a maintenance batch: no stock or period guards).
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <array>
#include <functional>

#include "framework/Frm_Base.h"
#include "setup/ImportSheets.h"

namespace qx::setup {
// Asks for a file: to read (save = false) or to write a template copy (save = true). Tests and
// the script runner install their own; the default is the file dialog. Empty = cancelled.
using FilePicker = std::function<QString(const QString& title, const QString& suggested, bool save)>;
FilePicker setFilePicker(FilePicker picker);
QString pickFile(QWidget* parent, const QString& title, const QString& suggested, bool save);
// The folder of the blank templates ("r" in the program folder, or QXCK_TEMPLATE_DIR).
QString templateFolder();
// The batch that clears every document; keepOpening keeps SKUs and opening stock.
QString clearDocumentsBatch(bool keepOpening);
// ExecSql as every batch of system initialisation runs it.
AnsiString execInitialisation(const AnsiString& batch);
}  // namespace qx::setup

class TQXCKS01 : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit TQXCKS01(QWidget* Owner);
    void InitForm(const Trecord& rec);

    // goods import, steps 1-5
    void btn_step1Click(QObject* Sender);
    void btn_step2Click(QObject* Sender);
    void btn_step3Click(QObject* Sender);
    void btn_step4Click(QObject* Sender);
    void btn_step5Click(QObject* Sender);
    // customers (0), suppliers (1), members (2): the template and the import
    void btn_templateClick(int sheet);
    void btn_importClick(int sheet);
    // clear documents
    void btn_clearClick(QObject* Sender);

    // The upload batch of the accepted rows.
    static QString UploadBatch(const qx::setup::ScanResult& scan, const std::vector<int>& rows);
    // The import batch of a customer (0), supplier (1) or member (2) sheet.
    static QString PartnerBatch(int sheet, bool clearFirst, const qx::setup::ScanResult& scan,
                                const std::vector<int>& rows);

    QTabWidget* PageControl;
    std::array<QPushButton*, 5> btn_step;
    QLabel* Lab_Status;
    // The file to read per page (goods, customers, suppliers, members); empty: asked for.
    std::array<QLineEdit*, 4> FileName;
    std::array<QRadioButton*, 3> ClearFirst;  // "导入前清空..." per sheet
    std::array<QRadioButton*, 3> KeepData;    // "我要保留原有数据..." per sheet
    std::array<QPushButton*, 3> btn_template;
    std::array<QPushButton*, 3> btn_import;
    QRadioButton* ClearAll;      // do not keep opening stock
    QRadioButton* KeepOpening;   // keep opening stock
    QPushButton* btn_clear;

    // The scanned goods rows waiting for step 3.
    qx::setup::ScanResult Scanned;
    std::vector<int> ScannedRows;
    TClientDataSet* AdoQry_Tmp;

private:
    // Reads, scans and previews a sheet; false when cancelled or unreadable.
    bool readAndPreview(const qx::setup::SheetSpec& spec, QLineEdit* fileName, qx::setup::ScanResult& scan,
                        std::vector<int>& rows);
    void copyTemplate(const qx::setup::SheetSpec& spec);
};

extern TQXCKS01* QXCKS01;
