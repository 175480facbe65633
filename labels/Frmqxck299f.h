#pragma once
// Hang tags by style: a style typed or picked, its colours with a count per size.
#include "framework/Frm_Base.h"

class TQXCK299F : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    explicit TQXCK299F(QWidget* Owner);
    ~TQXCK299F() override;

    void FormCreate();
    void InitA(TClientDataSet* list);
    void EDIT1Exit(QObject* Sender);
    void Button2Click(QObject* Sender);
    void btn_okClick(QObject* Sender) override;

    static AnsiString StyleQuery(const AnsiString& style);

    TLinkEdit* EDIT1;   // the style
    QLabel* WL_NAME;    // the style's data once found
    QLabel* PP_NAME;
    QLabel* PFJ;
    TClientDataSet* AdoQry_Work2;  // the style row
    TClientDataSet* AdoQry_Main;   // colours with counts
    TDBGridEh* DBGridEh;
    QPushButton* Button2;  // make tags (tag 1)
    QPushButton* Button3;  // make tags and close (tag 2)
    QPushButton* Button4;  // switch to making tags from a purchase receipt (tag 3)
    TQX_LINK_K* StyleLink = nullptr;

private:
    TClientDataSet* list_ = nullptr;
    QString loadedStyle_;
};

extern TQXCK299F* QXCK299F;
