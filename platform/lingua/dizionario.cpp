#include "platform/lingua/dizionario.h"

#include "platform/lingua/parole.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <hunspell/hunspell.hxx>
#include <stdexcept>

namespace dizionario
{

namespace
{

const QString nomeDizionario = QStringLiteral("it_IT");

// ISO 8859-15 è ISO 8859-1 con questi otto caratteri cambiati.
struct Scambio {
    char byte;
    char16_t carattere;
};

constexpr Scambio scambi[] = {
    {'\xA4', u'\u20AC'}, {'\xA6', u'\u0160'}, {'\xA8', u'\u0161'}, {'\xB4', u'\u017D'},
    {'\xB8', u'\u017E'}, {'\xBC', u'\u0152'}, {'\xBD', u'\u0153'}, {'\xBE', u'\u0178'},
};

// La parola come la scrivono i dizionari: accenti composti, apostrofo semplice.
QString normale(const QString &parola)
{
    QString forma = parola.normalized(QString::NormalizationForm_C);
    return forma.replace(QChar(u'\u2019'), QChar(u'\''));
}

bool utf8(const QString &codifica)
{
    return codifica.startsWith(QStringLiteral("UTF"), Qt::CaseInsensitive);
}

bool latino15(const QString &codifica)
{
    return codifica.endsWith(QStringLiteral("8859-15"), Qt::CaseInsensitive);
}

bool latino1(const QString &codifica)
{
    return codifica.endsWith(QStringLiteral("8859-1"), Qt::CaseInsensitive);
}

} // namespace

QString percorso()
{
    QStringList cartelle = qEnvironmentVariable("DICPATH").split(u':', Qt::SkipEmptyParts);
    cartelle << QStringLiteral("/usr/share/hunspell") << QStringLiteral("/usr/share/myspell/dicts")
             << QStringLiteral("/usr/share/myspell") << QStringLiteral("/usr/local/share/hunspell");
    for (const QString &cartella : std::as_const(cartelle)) {
        const QString base = cartella + u'/' + nomeDizionario;
        if (QFileInfo(base + QStringLiteral(".aff")).isReadable() &&
            QFileInfo(base + QStringLiteral(".dic")).isReadable())
            return base;
    }
    return {};
}

QString fileParole()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
           QStringLiteral("/parole.txt");
}

Dizionario::Dizionario()
{
    const QString base = percorso();
    if (base.isEmpty())
        throw std::runtime_error("il dizionario italiano non è installato");
    m_hunspell =
        std::make_unique<Hunspell>(QFile::encodeName(base + QStringLiteral(".aff")).constData(),
                                   QFile::encodeName(base + QStringLiteral(".dic")).constData());
    m_codifica = QString::fromStdString(m_hunspell->get_dict_encoding());
    if (!utf8(m_codifica) && !latino15(m_codifica) && !latino1(m_codifica))
        throw std::runtime_error("la codifica del dizionario italiano non è conosciuta");
    leggeParole();
}

Dizionario::~Dizionario() = default;

void Dizionario::leggeParole()
{
    QFile file(fileParole());
    if (!file.exists())
        return;
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(file.errorString().toStdString());
    m_aggiunte.clear();
    const QStringList righe = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &riga : righe) {
        const QString parola = normale(riga.trimmed());
        m_aggiunte.append(parola);
        m_mie.insert(parola.toCaseFolded());
    }
}

// Vuota se un carattere non esiste nella codifica del dizionario: allora non c'è neppure la parola.
std::string Dizionario::codificata(const QString &parola) const
{
    if (utf8(m_codifica))
        return parola.toStdString();
    std::string byte;
    for (const QChar carattere : parola) {
        char trovato = carattere.unicode() <= 0xFF ? carattere.toLatin1() : '\0';
        for (const Scambio &scambio : scambi) {
            if (!latino15(m_codifica))
                break;
            if (carattere == scambio.carattere)
                trovato = scambio.byte;
            else if (carattere.unicode() == static_cast<unsigned char>(scambio.byte))
                trovato = '\0';
        }
        if (trovato == '\0')
            return {};
        byte += trovato;
    }
    return byte;
}

QString Dizionario::decodificata(const std::string &parola) const
{
    if (utf8(m_codifica))
        return QString::fromStdString(parola);
    QString testo = QString::fromLatin1(parola.data(), static_cast<qsizetype>(parola.size()));
    if (latino15(m_codifica)) {
        for (const Scambio &scambio : scambi)
            testo.replace(QChar(static_cast<unsigned char>(scambio.byte)),
                          QChar(scambio.carattere));
    }
    return testo;
}

bool Dizionario::conosce(const QString &parola) const
{
    if (m_mie.contains(parola.toCaseFolded()))
        return true;
    const std::string byte = codificata(parola);
    return !byte.empty() && m_hunspell->spell(byte);
}

bool Dizionario::corretta(const QString &parola) const
{
    const QString forma = normale(parola);
    if (conosce(forma))
        return true;
    if (!forma.endsWith(u'\''))
        return false;
    const QString tronca = forma.chopped(1);
    if (conosce(tronca))
        return true;
    for (const QChar vocale : QStringLiteral("aeio")) {
        const bool maiuscola = tronca.size() > 1 && tronca.back().isUpper();
        if (conosce(tronca + (maiuscola ? vocale.toUpper() : vocale)))
            return true;
    }
    return false;
}

QStringList Dizionario::suggerimenti(const QString &parola) const
{
    QString forma = normale(parola);
    // Chi scrive "citta'" vuole "città": senza apostrofo il dizionario ci arriva.
    if (forma.endsWith(u'\''))
        forma.chop(1);
    return proposte(forma);
}

QStringList Dizionario::elisioni(const QString &parola) const
{
    const QString forma = normale(parola);
    QStringList trovate;
    for (QString proposta : proposte(forma) + proposte(forma.chopped(1))) {
        if (QStringLiteral("aeiou").contains(proposta.back(), Qt::CaseInsensitive))
            proposta.chop(1);
        if (!proposta.endsWith(u'\''))
            proposta += u'\'';
        if (corretta(proposta))
            trovate.append(proposta);
    }
    trovate.removeDuplicates();
    return trovate;
}

QStringList Dizionario::proposte(const QString &forma) const
{
    QStringList trovate;
    const std::string byte = codificata(forma);
    if (byte.empty())
        return trovate;
    for (const std::string &suggerimento : m_hunspell->suggest(byte))
        trovate.append(decodificata(suggerimento));
    return trovate;
}

void Dizionario::aggiungi(const QString &parola)
{
    const QString forma = normale(parola);
    // Anche un altro programma aperto può averne aggiunte.
    leggeParole();
    const QStringList insieme = m_aggiunte + QStringList{forma};
    QDir().mkpath(QFileInfo(fileParole()).path());
    QSaveFile file(fileParole());
    const QByteArray testo = insieme.join(u'\n').toUtf8() + '\n';
    if (!file.open(QIODevice::WriteOnly) || file.write(testo) != testo.size() || !file.commit())
        throw std::runtime_error(file.errorString().toStdString());
    m_aggiunte = insieme;
    m_mie.insert(forma.toCaseFolded());
}

} // namespace dizionario
