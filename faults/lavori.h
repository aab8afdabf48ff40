#pragma once

#include <QString>

#include <functional>

// Ciò che un programma fa a un archivio, detto passo per passo a chi lo guarda.
namespace lavori
{

// Una cartella con l'archivio, il Cestino, la cartella delle copie e quella dei recuperi.
struct Posto {
    QString cartella;
    QString archivio() const { return cartella + QStringLiteral("/archivio.tvd"); }
    QString cestino() const { return cartella + QStringLiteral("/Cestino"); }
    QString copia() const { return cartella + QStringLiteral("/copie/archivio.tvd"); }
    QString recupero() const { return cartella + QStringLiteral("/recuperi/archivio.tvd"); }
};

// Ciascuno lancia ado::Errore se non riesce. L'archivio resta aperto dopo i primi, chiuso dopo gli
// altri.
QString salva(const Posto &posto, const QString &nome);
// Cambia una persona e la mette in una coppia.
void iscrive(const Posto &posto, const QString &nome);
// Scrive un atto intero, con persone, famiglia, eventi e testi.
void scriveAtto(const Posto &posto);
// Di un atto cambia la voce e una persona, toglie l'altra e ne aggiunge una.
void cambiaAtto(const Posto &posto);
void elimina(const Posto &posto, const QString &voce);
QString allega(const Posto &posto, const QString &nome);
void compatta(const Posto &posto);
void copia(const Posto &posto);
void recupera(const Posto &posto);
// Rifiuta anche un motore che non porta sul disco ciò che scrive.
void apre(const Posto &posto);
void chiude();

// Il contenuto del file allegato con quel nome.
QByteArray contenuto(const QString &nome);

// Un archivio pronto in una cartella vuota: `voci` voci del campione.
void prepara(const Posto &posto, int voci);

} // namespace lavori
