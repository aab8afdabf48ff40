#include "demo/copione.h"

#include <QAbstractButton>
#include <QTextStream>

using namespace Qt::StringLiterals;
using namespace esempi;

Copione::Copione(Mani &mani, const std::vector<Archivio> &archivi, const QString &cartella)
    : Scena(mani, cartella + u"/esempi.tvd"_s), m_archivi(archivi)
{
}

QString Copione::scrittura(const QString &data)
{
    return scritturaData(data, m_date++);
}

Passo Copione::recita()
{
    co_await m_mani.appare(u"MDITras"_s);
    co_await m_mani.fotografa(u"principale-vuota"_s);
    co_await creaFile();
    co_await siPresenta();
    co_await creaArchivi();
    for (const Archivio &archivio : m_archivi)
        co_await trascriveArchivio(archivio, &archivio == &m_archivi.back());
    co_await elencaPersone();
    co_await m_mani.scegliMenu(u"Finestre"_s, u"Affianca in verticale"_s);
    co_await m_mani.fotografa(u"principale"_s);
}

Passo Copione::creaArchivi()
{
    for (const Archivio &archivio : m_archivi) {
        co_await m_mani.cliccaBarra(u"Nuovo"_s);
        co_await m_mani.appare(u"fmArchivio"_s);
        co_await m_mani.scrivi(u"Text1_0"_s, archivio.nome);
        co_await m_mani.scrivi(u"Text1_1"_s, archivio.abbreviato);
        co_await m_mani.scrivi(u"Text1_2"_s, archivio.gruppo);
        co_await m_mani.fotografa(u"archivio"_s);
        co_await m_mani.chiudi(u"Command1"_s);
    }
    co_await m_mani.fotografa(u"elenco-archivi"_s);
}

Passo Copione::trascriveArchivio(const Archivio &archivio, bool ultimo)
{
    co_await m_mani.mostraElenco(u"Archivi"_s);
    co_await m_mani.vaiAllaRiga(archivio.nome);
    co_await m_mani.cliccaBarra(u"Seleziona"_s);
    co_await m_mani.appareElenco(u"Registri"_s);
    for (const Registro &registro : archivio.registri) {
        co_await creaRegistro(registro);
        co_await m_mani.vaiAllaRiga(registro.titolo);
        co_await m_mani.cliccaBarra(u"Seleziona"_s);
        co_await m_mani.appareElenco(u"Voci"_s);
        for (const Atto &atto : registro.atti)
            co_await trascriveAtto(registro, atto);
        if (ultimo)
            continue;
        co_await m_mani.chiudiElenco();
        co_await m_mani.mostraElenco(u"Registri"_s);
    }
    if (!ultimo)
        co_await m_mani.chiudiElenco();
}

Passo Copione::creaRegistro(const Registro &registro)
{
    co_await m_mani.cliccaBarra(u"Nuovo"_s);
    co_await m_mani.appare(u"fmRegistro"_s);
    co_await m_mani.scrivi(u"Text1_0"_s, registro.titolo);
    co_await m_mani.scegli(u"ImageCombo2"_s, registro.tipo);
    co_await m_mani.scrivi(u"Text1_4"_s, scrittura(registro.dataIniziale));
    co_await m_mani.scrivi(u"Text1_5"_s, scrittura(registro.dataFinale));
    co_await m_mani.scrivi(u"Text1_6"_s, registro.supporto);
    co_await m_mani.fotografa(u"registro"_s);
    co_await m_mani.chiudi(u"Command1"_s);
}

Passo Copione::trascriveAtto(const Registro &registro, const Atto &atto)
{
    QElapsedTimer orologio;
    orologio.start();
    co_await m_mani.cliccaBarra(u"Nuovo"_s);
    co_await m_mani.appare(u"fmVoce"_s);
    co_await m_mani.scrivi(u"Text1_0"_s, atto.volume);
    co_await m_mani.scrivi(u"Text1_1"_s, atto.pagina);
    co_await m_mani.scrivi(u"Text1_2"_s, atto.numero);
    co_await m_mani.scrivi(u"Text1_3"_s, scrittura(atto.data));
    if (m_atti == 0)
        co_await provaSenzaGenere();
    for (const Individuo &persona : atto.persone) {
        co_await nuovoCollegamento(persona.ruolo, u"fmIndividuo"_s);
        co_await scriveIndividuo(persona);
        co_await m_mani.appare(u"fmVoce"_s);
    }
    co_await scriveTesto(u"Testo riportato"_s, atto.testo);
    if (!atto.traduzione.isEmpty())
        co_await scriveTesto(u"Nota"_s, atto.traduzione);
    co_await m_mani.fotografa(u"voce"_s);
    co_await m_mani.fotografa(u"schermata"_s, true);
    co_await m_mani.chiudi(u"Command1"_s);
    ++m_atti;
    racconta(registro, atto, orologio.elapsed());
}

Passo Copione::provaSenzaGenere()
{
    co_await m_mani.clicca(u"Command3_0"_s);
    co_await m_mani.rispondi(u"Selezionare una voce"_s, u"OK"_s, u"messaggio"_s);
    co_await m_mani.appare(u"fmVoce"_s);
}

// Comincia e finisce con la finestra dell'individuo davanti, finché non la salva.
Passo Copione::scriveIndividuo(const Individuo &individuo)
{
    co_await compilaIndividuo(individuo);
    co_await scriveEventi(individuo.eventi);
    for (const Famiglia &famiglia : individuo.famiglie) {
        co_await nuovoCollegamento(famiglia.tipo, u"fmFamiglia"_s);
        co_await scriveFamiglia(famiglia);
        co_await m_mani.appare(u"fmIndividuo"_s);
    }
    if (!individuo.famiglie.empty())
        co_await m_mani.fotografa(u"individuo"_s);
    co_await m_mani.chiudi(u"Command1"_s);
}

Passo Copione::compilaIndividuo(const Individuo &individuo)
{
    co_await m_mani.scrivi(u"Text1_0"_s, individuo.precisazione);
    co_await m_mani.scrivi(u"Text1_1"_s, individuo.nome);
    co_await m_mani.scrivi(u"Text1_3"_s, individuo.cognome);
    co_await m_mani.scrivi(u"Text1_5"_s, individuo.eta);
    if (individuo.sesso.isEmpty())
        co_return;
    QWidget *sesso = m_mani.cerca(individuo.sesso == u"M"_s ? u"Option1_1"_s : u"Option1_2"_s);
    // A un padre, a una moglie il sesso è già dato dal ruolo.
    if (sesso->isEnabled())
        co_await m_mani.clicca(sesso);
    if (!qobject_cast<QAbstractButton *>(sesso)->isChecked())
        throw Guasto(u"the sex of %1 is not %2"_s.arg(individuo.nome, individuo.sesso));
}

Passo Copione::scriveFamiglia(const Famiglia &famiglia)
{
    for (const Individuo &membro : famiglia.membri) {
        co_await nuovoCollegamento(membro.ruolo, u"fmIndividuo"_s);
        co_await scriveIndividuo(membro);
        co_await m_mani.appare(u"fmFamiglia"_s);
    }
    co_await scriveEventi(famiglia.eventi);
    co_await m_mani.fotografa(u"famiglia"_s);
    co_await m_mani.fotografa(u"finestre-aperte"_s, true);
    co_await m_mani.chiudi(u"Command1"_s);
}

Passo Copione::scriveEventi(const Eventi &eventi)
{
    const QString proprietario = m_mani.davanti()->objectName();
    for (const Evento &evento : eventi) {
        co_await nuovoCollegamento(evento.tipo, u"fmEvento"_s);
        co_await m_mani.scrivi(u"Text1_0"_s, evento.valore);
        co_await m_mani.scrivi(u"Text1_2"_s, evento.luogo);
        if (!m_dataSbagliata)
            co_await sbagliaData();
        co_await m_mani.scrivi(u"Text1_4"_s, scrittura(evento.data));
        co_await m_mani.fotografa(u"evento"_s);
        co_await registra(proprietario);
    }
}

// Una data che non esiste: il programma la rifiuta e la finestra resta.
Passo Copione::sbagliaData()
{
    m_dataSbagliata = true;
    co_await m_mani.scrivi(u"Text1_4"_s, u"30 febbraio 1564"_s);
    co_await m_mani.clicca(u"Command1"_s);
    co_await m_mani.rispondi(u"Non è stata inserita una data valida"_s, u"OK"_s,
                             u"messaggio-data"_s);
    co_await m_mani.appare(u"fmEvento"_s);
}

// Senza titolo, come sulla pagina dell'atto.
Passo Copione::scriveTesto(QString genere, QString testo)
{
    co_await nuovoCollegamento(genere, u"fmTxtL"_s);
    co_await m_mani.scrivi(u"Text1"_s, testo);
    co_await m_mani.fotografa(u"testo"_s);
    co_await m_mani.clicca(u"Command1"_s);
    co_await m_mani.chiudi(u"Command4"_s);
    co_await m_mani.appare(u"fmVoce"_s);
}

// Tutte le persone trascritte, coi loro eventi.
Passo Copione::elencaPersone()
{
    co_await m_mani.mostraElenco(u"Archivi"_s);
    co_await m_mani.scegliMenu(u"Tabelle"_s, u"Individui"_s);
    co_await m_mani.appare(u"fmVisualizza"_s);
    co_await m_mani.clicca(u"Option1_1"_s);
    co_await m_mani.clicca(u"Option1_7"_s);
    co_await m_mani.fotografa(u"visualizza"_s);
    co_await m_mani.chiudi(u"Command1"_s);
    co_await m_mani.appareElenco(u"Individui"_s);
    co_await m_mani.fotografa(u"elenco-individui"_s);
    co_await m_mani.chiudiElenco();
}

void Copione::racconta(const Registro &registro, const Atto &atto, qint64 millisecondi) const
{
    const Conto conto = conta(atto.persone);
    QTextStream(stdout)
        << u"%1. %2 (%3, %4): persons %5, families %6, events %7, texts %8; %9 s\n"_s.arg(m_atti, 2)
               .arg(atto.titolo, registro.titolo, registro.periodo)
               .arg(conto.individui)
               .arg(conto.famiglie)
               .arg(conto.eventi)
               .arg(atto.traduzione.isEmpty() ? 1 : 2)
               .arg(static_cast<double>(millisecondi) / 1000, 0, 'f', 1);
}
