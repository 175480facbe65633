#pragma once
// The text types the module is written with. Both are Qt's QString: implicitly shared, so a
// copy is a counted reference, as the module expects of its text members.
#include <QString>

using AnsiString = QString;
using WideString = QString;
