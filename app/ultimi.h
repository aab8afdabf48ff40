#pragma once

#include <QString>
#include <QStringList>

// Dove si è lavorato: gli ultimi file aperti e il registro in cui si è scritto per ultimo. Sta
// nelle impostazioni dell'utente; di chi lavora vi è solo il codice, non il nome.
namespace ultimi
{

// Quanti file si ricordano.
constexpr int quanti = 6;

// I percorsi, dal più recente.
QStringList file();
void aggiunge(const QString &percorso);
// Lo dimentica, anche come quello da cui si continua.
void toglie(const QString &percorso);
// Come si leggono in un menu: il nome e, se due lo hanno uguale, la parte della cartella che li
// distingue. Ciascuno ha al più una sessantina di lettere.
QStringList nomi(const QStringList &percorsi);

// Il posto in cui si è scritto per ultimo.
struct Posto {
    QString percorso;
    QString registro;
    QString operatore; // chi era entrato; vuoto se nessuno

    bool operator==(const Posto &altro) const = default;
};
Posto posto();
void ricorda(const Posto &qui);

} // namespace ultimi
