#include "documents/common/StatementTemplate.h"

#include "framework/U_function.h"

namespace qx::documents {

QString fillTemplate(const QString& statement, const PlaceholderResolver& resolve) {
    QString out;
    out.reserve(statement.size() + 64);
    qsizetype at = 0;
    while (at < statement.size()) {
        const qsizetype open = statement.indexOf('{', at);
        const qsizetype close = open < 0 ? -1 : statement.indexOf('}', open + 1);
        if (open < 0 || close < 0) {
            out += statement.mid(at);
            break;
        }
        out += statement.mid(at, open - at);
        const QString name = statement.mid(open + 1, close - open - 1);
        QString value;
        if (resolve(name, value)) out += SqlStr(value);
        else out += statement.mid(open, close - open + 1);
        at = close + 1;
    }
    return out;
}

}  // namespace qx::documents
