#pragma once
// Hang-tag label making: the list of tags (one row per physical tag) kept on this machine
// between runs, filled from a purchase receipt or by style, printed as hang tags with barcodes.
#include "framework/Frm_Base_Qry.h"

class QPushButton;
class TQXCK299DB;
class TQXCK299F;

class TQXCK299 : public TFrm_Base_Qry {
    Q_OBJECT
public:
    explicit TQXCK299(QWidget* Owner);
    ~TQXCK299() override;

    void FormCreate();
    void InitForm(const Trecord& rec) override;
    void Act_LocateExecute(QObject* Sender) override;
    void Act_FilterExecute(QObject* Sender);
    void Label1Click(QObject* Sender);
    void Act_DeleteExecute(QObject* Sender);
    void Act_PrintExecute(QObject* Sender) override;
    void Act_PreviewExecute(QObject* Sender) override;
    void AdoQry_MainBeforePost(TDataSet* DataSet);
    void FormClose();
    void FormDestroy();

    // The file that keeps the list, and the settings file with the last source used.
    static QString ListFile();
    static QString SettingsFile();

    int tmbq = 0;  // 1: the by-style dialog was used last, 0: the purchase-receipt dialog
    TQXCK299DB* FromReceipt = nullptr;
    TQXCK299F* ByStyle = nullptr;
    QLabel* Label2;        // the note on what is kept
    QPushButton* Label1;   // "清空表格暂存标签"
    QAction* Act_Delete;

protected:
    bool FormCloseQuery() override;

private:
    void ShowRowCount();
    bool listLoaded_ = false;
};

extern TQXCK299* QXCK299;
