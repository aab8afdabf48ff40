#pragma once

#include <QString>

#include <sys/types.h>

// Chi ha aperto un archivio lo tiene preso, insieme agli altri; chi ne vuole prendere il posto deve
// tenerlo da solo. I blocchi del motore non bastano: fra una lettura e l'altra non ne tiene, e un
// programma che resta sul file di prima disferebbe il giornale di quello nuovo.
class Presa
{
public:
    // Lancia ado::Errore con la causa Occupato se per un po' un altro programma lo tiene da solo.
    // Un file che non si apre non è preso da nessuno.
    explicit Presa(const QString &percorso);
    ~Presa();
    Presa(const Presa &) = delete;
    Presa &operator=(const Presa &) = delete;

    // Lo tiene da solo fino alla fine; lancia con la causa Occupato se un altro programma l'ha
    // aperto. Gli altri che l'hanno preso in questo programma non contano.
    void daSolo();
    // Falso se il percorso è ormai di un altro file.
    bool attuale(const QString &percorso) const;

    // Il descrittore di un file che questo programma tiene; negativo se non lo tiene. Chi legge il
    // file senza il motore lo fa di qui: chiudere un altro descrittore ne scioglierebbe i blocchi.
    static int descrittoreDi(const QString &percorso);

private:
    bool m_preso = false;
    dev_t m_disco = 0;
    ino_t m_numero = 0;
};
