#pragma once
// Pinyin initials of a text, for the PYM columns and the pick lists' quick search:
// GetPY("红色") == "HS"; Latin letters and digits are kept (upper-cased), other characters
// dropped. Uses ICU's "Han-Latin; Latin-ASCII" transliteration.
#include "framework/Export.h"
#include "framework/Types.h"

QX_FRAMEWORK_EXPORT AnsiString GetPY(AnsiString text);
