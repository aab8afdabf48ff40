#pragma once

#include <QString>

#include <functional>

// I valori condivisi del programma: che cosa è corrente, e il testo lungo che passa di mano.
namespace modTarvola
{

enum SceltaChiusuraFinestra { ChiusuraChiudi = 0, ChiusuraBackUp = 1, ChiusuraAnnulla = 2 };

struct Contesto {
    QString ColonnaLingua = QStringLiteral("L1");
    QString PercorsoCorrente;
    QString OperatoreCorrente;
    QString ArchivioCorrente;
    QString RegistroCorrente;
    int TipoRegistroCorrente = 0;
    QString VoceCorrente;
    QString IndividuoCorrente;
    QString EventoCorrente;
    int AmbitoScelto = 0;
    int SceltaChiusura = ChiusuraAnnulla;
    QString TestoCampoLungo;
    QString NomeCampoLungo;
    bool TestoModificato = false;
    bool NomeModificato = false;
    bool SalvataggioRifiutato = false;
    // Comincia un back-up appena la finestra principale è libera; la dà lei.
    std::function<void()> FaiBackUp;
};

Contesto &contesto();
// Riporta tutti i valori condivisi a quelli dell'avvio, archivi aperti e finestre compresi.
void avviaContesto();

} // namespace modTarvola
