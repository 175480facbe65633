#pragma once
// What the two tag dialogs share: the grid of source lines (style, colour and a count per size,
// the counts typed over), the size titles of the current line, and the meaning of their buttons.
#include <QStringList>

#include "framework/Types.h"

class QObject;
class QPushButton;
class QWidget;
class TClientDataSet;
class TDBGridEh;
class TField;

namespace qx::labels {

// Tags of the dialog buttons: 1 makes tags, 2 makes tags and closes the dialog, 3 closes it
// with result 3 (the other source dialog opens) without making tags.
enum TagButton { MakeTags = 1, MakeTagsAndClose = 2, SwitchSource = 3 };
QPushButton* AddTagButton(QWidget* parent, const QString& name, const QString& caption, int tag);
int ButtonTag(const QObject* button);

// Shows style, colour and the ten counts of the source lines (counts editable, sizes after G_CM
// hidden) and makes typed counts whole numbers from 0 to 9999.
void SetupSourceGrid(TDBGridEh* grid, TClientDataSet* lines);
// Titles "尺码|{size name}" of the size columns from the current line's M0..M9.
void ShowSizeTitles(TDBGridEh* grid, TClientDataSet* lines);
// Deletes rows (0-based) of a dataset shown in a grid, last first, and clears the selection.
void DeleteRows(TClientDataSet* dataSet, TDBGridEh* grid, QList<int> rows);
// The text setter of the count fields.
void SetCountText(TField* field, const AnsiString& text);

}  // namespace qx::labels
