#pragma once
// The confirmation of the goods import: the classes, brands, colours, size groups and
// warehouses named in the uploaded rows, each with a new code; OK wipes the stock database and
// rebuilds master data, SKUs and opening stock from the uploaded rows in one batch, then
// synchronises the colour groups of the styles.
#include <QCheckBox>

#include "framework/Frm_Base.h"

class TQXCKS01_1 : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit TQXCKS01_1(QWidget* Owner);
    void InitForm();
    void btn_okClick(QObject* Sender) override;

    // The generation batch for the lists as they stand.
    AnsiString GenerationBatch() const;
    // The colour-group batch from the current d1804 rows.
    AnsiString ColourGroupBatch();

    TClientDataSet* AdoQry_Class;   // CLASS_ID, CLASS_NAME, PYM
    TClientDataSet* AdoQry_Brand;   // PP_ID, PP_NAME, PYM
    TClientDataSet* AdoQry_Colour;  // COL_ID, COL_NAME, PYM, S, PP_ID
    TClientDataSet* AdoQry_Size;    // M_ID, M_NAME, PYM
    TClientDataSet* AdoQry_Store;   // CK_ID, CK_NAME, PYM
    TClientDataSet* AdoQry_Tmp;
    QCheckBox* StyleColours;        // record the colours of each style (d1804)
};

extern TQXCKS01_1* QXCKS01_1;
