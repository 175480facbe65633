#include "framework/Zpy.h"

#include <unicode/translit.h>
#include <unicode/unistr.h>

#include <memory>
#include <mutex>

namespace {

// One transliterator per process: creating it loads ICU's rule tables (slow), using it is cheap.
icu::Transliterator* hanToLatin() {
    static std::unique_ptr<icu::Transliterator> instance;
    static std::once_flag once;
    std::call_once(once, [] {
        UErrorCode status = U_ZERO_ERROR;
        instance.reset(icu::Transliterator::createInstance("Han-Latin; Latin-ASCII", UTRANS_FORWARD,
                                                           status));
        if (U_FAILURE(status)) instance.reset();
    });
    return instance.get();
}

QString toPinyin(const QString& text) {
    icu::Transliterator* t = hanToLatin();
    if (!t) return text;
    icu::UnicodeString u(reinterpret_cast<const UChar*>(text.utf16()), int32_t(text.size()));
    static std::mutex mutex;  // Transliterator::transliterate is not thread-safe
    std::lock_guard<std::mutex> lock(mutex);
    t->transliterate(u);
    return QString(reinterpret_cast<const QChar*>(u.getBuffer()), u.length());
}

}  // namespace

AnsiString GetPY(AnsiString text) {
    QString out;
    for (QChar c : text) {
        if (c.unicode() < 128) {
            if (c.isLetterOrNumber()) out += c.toUpper();
            continue;
        }
        // Each Chinese character on its own: its syllable's first letter.
        const QString latin = toPinyin(QString(c)).trimmed();
        for (QChar l : latin) {
            if (l.unicode() < 128 && l.isLetterOrNumber()) {
                out += l.toUpper();
                break;
            }
        }
    }
    return out;
}
