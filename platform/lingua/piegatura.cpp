#include "platform/lingua/piegatura.h"

namespace italiano
{

QString piegato(QStringView testo)
{
    const QString scomposto = testo.toString().normalized(QString::NormalizationForm_KD);
    QString pulito;
    pulito.reserve(scomposto.size());
    for (const QChar lettera : scomposto) {
        if (lettera.isMark())
            continue;
        if (lettera.isLetterOrNumber() || lettera.isSurrogate())
            pulito += lettera.toCaseFolded();
        else if (!pulito.isEmpty() && pulito.back() != u' ')
            pulito += u' ';
    }
    if (pulito.endsWith(u' '))
        pulito.chop(1);
    return pulito;
}

} // namespace italiano
