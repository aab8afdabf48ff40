#include "app/aiuto.h"

#include "app/fmGuida.h"
#include "platform/disco/sistema.h"
#include "platform/finestre/desktop.h"
#include "platform/finestre/messaggi.h"

#include <QCoreApplication>
#include <QLocale>

namespace modTarvola
{

namespace
{

const QString paginaDelProgramma = QStringLiteral(TARVOLA_PAGINA);
const QString indirizzoAssistenza = QStringLiteral(TARVOLA_ASSISTENZA);
const QString paginaIniziale = QStringLiteral("htm/inizio.htm");
const QString aCapo = QStringLiteral("\r\n");

// Apre il collegamento, e se nessuno lo apre mostra il messaggio.
bool apre(QWidget *sopra, const QString &collegamento, const QString &altrimenti)
{
    const auto lodice = [sopra, altrimenti] { messaggi::avvisa(sopra, altrimenti); };
    const bool preso = desktop::apreCollegamento(collegamento, sopra, lodice);
    if (!preso)
        lodice();
    return preso;
}

void scriveATarvola(QWidget *sopra)
{
    const QString corpo = QStringLiteral("Tarvola versione ") +
                          QCoreApplication::applicationVersion() + aCapo + InfoSistema();
    ApriPostaElettronica(sopra, indirizzoAssistenza, QStringLiteral("Informazioni su Tarvola"),
                         corpo, {}, {});
}

} // namespace

void ComandoAiuto(QWidget *sopra, VoceAiuto voce)
{
    switch (voce) {
    case VoceAiuto::Manuale:
        MostraGuida(sopra, paginaIniziale);
        break;
    case VoceAiuto::HomePage:
        apre(sopra, paginaDelProgramma,
             QStringLiteral("Nessun programma ha aperto la pagina\n") + paginaDelProgramma);
        break;
    case VoceAiuto::Scrivi:
        scriveATarvola(sopra);
        break;
    }
}

void MostraGuida(QWidget *sopra, const QString &pagina)
{
    mostraGuida(sopra, pagina);
}

QString InKilobyte(quint64 byte)
{
    QLocale italiano(QLocale::Italian, QLocale::Italy);
    italiano.setNumberOptions(QLocale::OmitGroupSeparator);
    // Dividere per una potenza di due non perde cifre, e la forma più breve le scrive tutte.
    return italiano.toString(static_cast<double>(byte) / 1024.0, 'f',
                             QLocale::FloatingPointShortest);
}

QString InfoSistema()
{
    const sistema::Memoria memoria = sistema::memoria();
    return sistema::nome() + aCapo + QStringLiteral("Memoria fisica disponibile (KB) : ") +
           InKilobyte(memoria.fisicaDisponibile) + aCapo +
           QStringLiteral("Memoria fisica totale (KB) : ") + InKilobyte(memoria.fisicaTotale) +
           aCapo + QStringLiteral("Memoria virtuale disponibile (KB) : ") +
           InKilobyte(memoria.virtualeDisponibile) + aCapo +
           QStringLiteral("Memoria virtuale totale (KB) : ") + InKilobyte(memoria.virtualeTotale) +
           aCapo;
}

QString CodificaACapo(const QString &testo)
{
    return QString(testo).replace(aCapo, QStringLiteral("%0D%0A"));
}

QString CollegamentoPosta(const QString &indirizzo, const QString &oggetto, const QString &corpo,
                          const QString &copia, const QString &copiaNascosta)
{
    QString domanda;
    const auto aggiunge = [&domanda](const QString &nome, const QString &valore) {
        if (!valore.isEmpty())
            domanda += nome + valore;
    };
    aggiunge(QStringLiteral("&Subject="), oggetto);
    aggiunge(QStringLiteral("&Body="), CodificaACapo(corpo));
    aggiunge(QStringLiteral("&CC="), copia);
    aggiunge(QStringLiteral("&BCC="), copiaNascosta);
    if (!domanda.isEmpty())
        domanda[0] = u'?';
    return QStringLiteral("mailto:") + indirizzo + domanda;
}

bool ApriPostaElettronica(QWidget *sopra, const QString &indirizzo, const QString &oggetto,
                          const QString &corpo, const QString &copia, const QString &copiaNascosta)
{
    return apre(
        sopra, CollegamentoPosta(indirizzo, oggetto, corpo, copia, copiaNascosta),
        QStringLiteral("Nessun programma di posta ha aperto il messaggio. L'indirizzo è\n") +
            indirizzo);
}

} // namespace modTarvola
