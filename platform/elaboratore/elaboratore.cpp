#include "platform/elaboratore/elaboratore.h"

#include "platform/elaboratore/finestra_ortografia.h"
#include "platform/elaboratore/registro.h"
#include "platform/finestre/messaggi.h"

#include <utility>

using registro::Radice;

namespace elaboratore
{

namespace
{

const QString estensione = QStringLiteral(".doc");
const QString classe = QStringLiteral("Tarvola.Documento");
const std::pair<QString, QString> chiavi[] = {
    {estensione, classe},
    {classe, QStringLiteral("Documento")},
    {classe + QStringLiteral("\\Shell\\Open\\Command"),
     QStringLiteral("\"WinWord.Exe\" /Automation")},
};

// Vero se l'estensione è già di un'altra classe: allora non la si porta via.
bool diAltri()
{
    registro::Chiave chiave;
    if (registro::RegOpenKeyEx(Radice::HKEY_CLASSES_ROOT, estensione, registro::KEY_READ, chiave) !=
        registro::ERROR_SUCCESS)
        return false;
    // Lo spazio è quello della nostra, con lo zero finale: una classe più lunga non ci sta, ed è
    // d'altri.
    QString valore(classe.size() + 1, QChar(u'\0'));
    const bool nostra = registro::RegQueryValueEx(chiave, valore) == registro::ERROR_SUCCESS &&
                        valore == classe + QChar(u'\0');
    registro::RegCloseKey(chiave);
    return !nostra;
}

} // namespace

void registra()
{
    if (diAltri())
        return;
    const bool installato = !dizionario::percorso().isEmpty();
    for (const auto &[chiave, valore] : chiavi) {
        if (installato)
            registro::scrivi(Radice::HKEY_CLASSES_ROOT, chiave, valore);
        else
            registro::togli(Radice::HKEY_CLASSES_ROOT, chiave);
    }
}

void Applicazione::Documents_Add()
{
    m_testo.clear();
    m_scelti = 0;
}

void Applicazione::Selection_TypeText(const QString &testo)
{
    m_testo += testo;
}

void Applicazione::ActiveDocument_CheckGrammar()
{
    dizionario::Dizionario parole;
    Correttore correttore(m_testo, parole, Options.IgnoreUppercase);
    if (!correttore.avanza()) {
        messaggi::avvisa(nullptr, QStringLiteral("Non sono state trovate parole sbagliate"));
        return;
    }
    FinestraOrtografia(correttore, parole).exec();
    m_testo = correttore.testo();
}

void Applicazione::Selection_WholeStory()
{
    m_scelti = m_testo.size();
}

QString Applicazione::Selection_Text() const
{
    return m_testo.left(m_scelti);
}

void Applicazione::ActiveDocument_Close()
{
    Documents_Add();
}

void Applicazione::Quit()
{
    Documents_Add();
}

} // namespace elaboratore
