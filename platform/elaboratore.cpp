#include "platform/elaboratore.h"

#include "platform/finestra_ortografia.h"
#include "platform/messaggi.h"
#include "platform/registro.h"

namespace elaboratore
{

namespace
{

const QString estensione = QStringLiteral(".doc");
const QString classe = QStringLiteral("Tarvola.Documento");
const QString comando = QStringLiteral("Tarvola.Documento\\Shell\\Open\\Command");

} // namespace

void registra()
{
    using namespace registro;
    if (dizionario::percorso().isEmpty()) {
        for (const QString &chiave : {estensione, classe, comando})
            togli(Radice::HKEY_CLASSES_ROOT, chiave);
        return;
    }
    scrivi(Radice::HKEY_CLASSES_ROOT, estensione, classe);
    scrivi(Radice::HKEY_CLASSES_ROOT, classe, QStringLiteral("Documento"));
    scrivi(Radice::HKEY_CLASSES_ROOT, comando, QStringLiteral("\"WinWord.Exe\" /Automation"));
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
