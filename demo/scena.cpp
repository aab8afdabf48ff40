#include "demo/scena.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

const Credenziali &trascrittoreDegliAtti()
{
    static const Credenziali sue{u"Ludovico"_s, u"Muratori"_s, u"estense1672"_s};
    return sue;
}

Scena::Scena(Mani &mani, QString percorso) : m_mani(mani), m_percorso(std::move(percorso)) {}

Passo Scena::creaFile()
{
    const bool presente = QFileInfo::exists(percorso());
    co_await m_mani.scegliMenu(u"File"_s, u"Nuovo"_s);
    co_await m_mani.appare(u"QFileDialog"_s);
    const QPointer<QWidget> dialogo = m_mani.davanti();
    co_await m_mani.scrivi(u"fileNameEdit"_s, percorso().chopped(u".tvd"_s.size()));
    co_await m_mani.fotografa(u"scelta-file"_s);
    co_await m_mani.premi(Qt::Key_Return);
    co_await m_mani.scompare(dialogo, u"the file dialog"_s);
    if (presente)
        co_await sostituisce();
    co_await m_mani.appare(u"fmLogin"_s);
    co_await m_mani.fotografa(u"accesso"_s);
}

// Un file di prima non si perde: il programma lo mette nel Cestino.
Passo Scena::sostituisce()
{
    co_await m_mani.rispondi(u"Il file esiste, cancellare il vecchio file?"_s, u"Sì"_s,
                             u"messaggio-file-esistente"_s);
    co_await m_mani.rispondi(u"Attenzione! Il vecchio file\n"_s + percorso() +
                                 u"\nsarà spostato nella cartella 'Cestino'"_s,
                             u"Riprova"_s, u"messaggio-cestino"_s);
    co_await m_mani.rispondiAInizio(u"Il file\n"_s + percorso() + u"\nè stato rinominato\n"_s,
                                    u"OK"_s);
}

Passo Scena::siPresenta()
{
    const Credenziali &chi = trascrittoreDegliAtti();
    co_await m_mani.clicca(u"cmdNuova"_s);
    co_await m_mani.appare(u"fmOperatore"_s);
    co_await m_mani.scrivi(u"Text1_0"_s, chi.nome);
    co_await m_mani.scrivi(u"Text1_1"_s, chi.cognome);
    co_await m_mani.scrivi(u"Text1_2"_s, chi.password);
    co_await m_mani.scrivi(u"Text1_3"_s, chi.password);
    const QPointer<QWidget> finestra = m_mani.davanti();
    co_await m_mani.clicca(u"Command1"_s);
    co_await m_mani.rispondi(u"I dati sono stati registrati\nAnnotare nome e password"_s, u"OK"_s);
    co_await m_mani.scompare(finestra, u"fmOperatore"_s);
    co_await m_mani.appare(u"fmLogin"_s);
    co_await m_mani.scrivi(u"txtUserName"_s, chi.nome);
    co_await m_mani.scrivi(u"txtPassword"_s, chi.password);
    co_await m_mani.chiudi(u"cmdOK"_s);
    co_await m_mani.appareElenco(u"Archivi"_s);
}

Passo Scena::nuovoCollegamento(QString genere, QString finestra)
{
    co_await m_mani.scegli(u"ImageCombo1"_s, genere);
    co_await m_mani.clicca(u"Command3_0"_s);
    co_await m_mani.appare(finestra);
}

Passo Scena::registra(QString tornaA)
{
    co_await m_mani.chiudi(u"Command1"_s);
    co_await m_mani.appare(tornaA);
}
