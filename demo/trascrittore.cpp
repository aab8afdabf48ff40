#include "demo/trascrittore.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;
using verifica::Riga;

namespace
{

// Ciò che si batte, per campo; le caselle di una finestra sono numerate in questo ordine.
struct Campo {
    QString nome;
    QString valore;
};
using Campi = QList<Campo>;

const Campi trascrittore{{u"Nome"_s, u"Agnese"_s}, {u"Cognome"_s, u"Dell'Òrto"_s}};
const QString password = u"pieve1564"_s;
const Campi indirizzo{{u"Indirizzo1"_s, u"presso l'Archivio diocesano"_s},
                      {u"Indirizzo2"_s, u"piazza del Duomo, 1"_s},
                      {u"Indirizzo3"_s, {}},
                      {u"Città"_s, u"Pisa"_s},
                      {u"Stato"_s, u"Toscana"_s},
                      {u"Nazione"_s, u"Italia"_s},
                      {u"CodicePostale"_s, u"56126"_s}};
const Campi recapito{{u"Telefono"_s, {}},
                     {u"Cellulare"_s, {}},
                     {u"Fax"_s, {}},
                     {u"E-mail"_s, u"agnese@example.org"_s},
                     {u"PaginaWeb"_s, u"https://example.org/agnese"_s},
                     {u"Altro1"_s, u"il martedì, in sala di studio"_s}};
const Campi archivio{{u"Nome"_s, u"Archivio della pieve"_s}, {u"Abbreviazione"_s, u"Pieve"_s}};
const Campi contatto{{u"Nome"_s, u"Niccolò"_s}, {u"Cognome"_s, u"D'Aquino"_s}};

const QString titoloNota = u"Stato delle carte"_s;
const QString parolaGiusta = u"acqua"_s;
const QString parolaSbagliata = u"acuqa"_s;

QString nota(const QString &parola)
{
    return u"La coperta del primo libro è macchiata di "_s + parola +
           u"; le carte si leggono tutte."_s;
}

Passo compila(Mani &mani, Campi campi)
{
    for (qsizetype i = 0; i < campi.size(); ++i)
        co_await mani.scrivi(u"Text1_%1"_s.arg(i), campi.at(i).valore);
}

Riga riga(const Campi &campi, const Campi &altri)
{
    Riga tutta;
    for (const Campo &campo : campi + altri) {
        if (!campo.valore.isEmpty())
            tutta[campo.nome] = campo.valore;
    }
    return tutta;
}

} // namespace

Trascrittore::Trascrittore(Mani &mani, const QString &cartella, QString scansione)
    : Scena(mani, cartella + u"/trascrittore.tvd"_s), m_scansione(std::move(scansione))
{
}

Passo Trascrittore::recita()
{
    co_await creaFile();
    co_await sbagliaAccesso();
    co_await registraTrascrittore();
    co_await entra();
    co_await creaArchivio();
    co_await m_mani.chiudiElenco();
}

Passo Trascrittore::sbagliaAccesso()
{
    co_await m_mani.clicca(u"cmdOK"_s);
    co_await m_mani.rispondi(u"Inserire il nome e la password"_s, u"OK"_s);
    co_await m_mani.appare(u"fmLogin"_s);
}

Passo Trascrittore::registraTrascrittore()
{
    co_await m_mani.clicca(u"cmdNuova"_s);
    co_await m_mani.appare(u"fmOperatore"_s);
    co_await compila(m_mani, trascrittore);
    co_await m_mani.scrivi(u"Text1_2"_s, password);
    co_await m_mani.scrivi(u"Text1_3"_s, password.toUpper());
    co_await m_mani.clicca(u"Command1"_s);
    co_await m_mani.rispondi(u"La password non è uguale alla conferma"_s, u"OK"_s);
    co_await m_mani.appare(u"fmOperatore"_s);
    co_await m_mani.scrivi(u"Text1_3"_s, password);
    co_await scriveRecapiti();
    co_await m_mani.fotografa(u"operatore"_s);
    const QPointer<QWidget> finestra = m_mani.davanti();
    co_await m_mani.clicca(u"Command1"_s);
    co_await m_mani.rispondi(u"I dati sono stati registrati\nAnnotare nome e password"_s, u"OK"_s);
    co_await m_mani.scompare(finestra, u"fmOperatore"_s);
    co_await m_mani.appare(u"fmLogin"_s);
}

// Il primo collegamento registra il trascrittore, che prima non c'è.
Passo Trascrittore::scriveRecapiti()
{
    co_await m_mani.scegli(u"ImageCombo1"_s, u"Indirizzo"_s);
    co_await m_mani.clicca(u"Command3_0"_s);
    co_await m_mani.rispondi(u"I dati sono stati registrati\nAnnotare nome e password"_s, u"OK"_s);
    co_await m_mani.appare(u"fmLuogo"_s);
    co_await compila(m_mani, indirizzo);
    co_await m_mani.fotografa(u"indirizzo"_s);
    co_await registra(u"fmOperatore"_s);
    co_await nuovoCollegamento(u"Recapito"_s, u"fmRecapito"_s);
    co_await compila(m_mani, recapito);
    co_await m_mani.fotografa(u"recapito"_s);
    co_await registra(u"fmOperatore"_s);
}

// Il nome si può scrivere tutto minuscolo, la password sbagliata no.
Passo Trascrittore::entra()
{
    co_await m_mani.scrivi(u"txtUserName"_s, trascrittore.constFirst().valore.toLower());
    co_await m_mani.scrivi(u"txtPassword"_s, password + u'5');
    co_await m_mani.clicca(u"cmdOK"_s);
    co_await m_mani.rispondi(u"Password inesistente"_s, u"OK"_s);
    co_await m_mani.appare(u"fmLogin"_s);
    co_await m_mani.scrivi(u"txtPassword"_s, password);
    co_await m_mani.chiudi(u"cmdOK"_s);
    co_await m_mani.appareElenco(u"Archivi"_s);
}

Passo Trascrittore::creaArchivio()
{
    co_await m_mani.cliccaBarra(u"Nuovo"_s);
    co_await m_mani.appare(u"fmArchivio"_s);
    co_await compila(m_mani, archivio);
    co_await scriveNota();
    co_await allegaScansione();
    co_await nuovoCollegamento(u"Contatto"_s, u"fmOperatore"_s);
    co_await compila(m_mani, contatto);
    co_await registra(u"fmArchivio"_s);
    co_await m_mani.fotografa(u"collegamenti"_s);
    co_await m_mani.chiudi(u"Command1"_s);
    co_await m_mani.appareElenco(u"Archivi"_s);
}

Passo Trascrittore::scriveNota()
{
    co_await nuovoCollegamento(u"Nota"_s, u"fmTxtL"_s);
    co_await m_mani.scrivi(u"Text2"_s, titoloNota);
    co_await m_mani.scrivi(u"Text1"_s, nota(parolaSbagliata));
    co_await correggeNota();
    co_await m_mani.clicca(u"Command1"_s);
    co_await m_mani.chiudi(u"Command4"_s);
    co_await m_mani.appare(u"fmArchivio"_s);
}

// L'unica parola sbagliata, cambiata nella prima che il dizionario suggerisce.
Passo Trascrittore::correggeNota()
{
    co_await m_mani.clicca(u"Command2"_s);
    co_await m_mani.appare(u"FinestraOrtografia"_s);
    co_await m_mani.fotografa(u"ortografia"_s);
    co_await m_mani.chiudi(u"Cambia"_s);
    co_await m_mani.appare(u"fmTxtL"_s);
}

Passo Trascrittore::allegaScansione()
{
    co_await m_mani.scegli(u"ImageCombo1"_s, u"File allegato"_s);
    co_await m_mani.clicca(u"Command3_0"_s);
    co_await m_mani.appare(u"QFileDialog"_s);
    const QPointer<QWidget> dialogo = m_mani.davanti();
    co_await m_mani.scrivi(u"fileNameEdit"_s, m_scansione);
    co_await m_mani.premi(Qt::Key_Return);
    co_await m_mani.scompare(dialogo, u"the file dialog"_s);
    co_await m_mani.appare(u"fmArchivio"_s);
}

verifica::Tabelle Trascrittore::attese() const
{
    const QString suo = u"IdProprietario"_s;
    QFile scansione(m_scansione);
    if (!scansione.open(QIODevice::ReadOnly))
        throw Guasto(u"cannot read "_s + m_scansione);
    verifica::Tabelle tabelle;
    tabelle[u"Operatori"_s] = {
        riga(trascrittore,
             {{u"Codice"_s, u"O1"_s}, {u"Tipo"_s, u"Trascrittore"_s}, {u"Password"_s, password}}),
        riga(contatto, {{u"Codice"_s, u"O2"_s}, {u"Tipo"_s, u"Contatto"_s}})};
    tabelle[u"Luoghi"_s] = {riga(indirizzo, {{u"Codice"_s, u"L1"_s}, {suo, u"O1"_s}})};
    tabelle[u"Comunicazioni"_s] = {riga(recapito, {{u"Codice"_s, u"C1"_s}, {suo, u"O1"_s}})};
    tabelle[u"Archivi"_s] = {riga(archivio, {{u"Codice"_s, u"A1"_s}})};
    const Campi binario{{suo, u"A1"_s}};
    tabelle[u"Binari"_s] = {
        riga(binario, {{u"Codice"_s, u"B1"_s},
                       {u"Tipo"_s, u"Nota"_s},
                       {u"Nome"_s, titoloNota},
                       {u"Campolungo"_s, nota(parolaGiusta)}}),
        riga(binario, {{u"Codice"_s, u"B2"_s},
                       {u"Tipo"_s, u"File allegato"_s},
                       {u"Nome"_s, QFileInfo(m_scansione).fileName()},
                       {u"Campolungo"_s, verifica::impronta(scansione.readAll())}})};
    for (const QString &operatore : {u"O1"_s, u"O2"_s})
        tabelle[u"OperatoriContesti"_s].append(
            Riga{{u"CodiceOperatore"_s, operatore}, {u"CodiceContesto"_s, u"A1"_s}});
    return tabelle;
}
