#pragma once

#include <QString>

#include <stdexcept>

// Il solo tipo di errore di ciò che sta sotto le finestre.
namespace ado
{

enum class Causa {
    Altro,
    Mancante,
    Illeggibile,
    NonArchivio,
    PasswordErrata,
    Occupato,
    Danneggiato,
    SolaLettura,
    DiscoPieno,
    Chiusa,
    Spostato,
    VersioneNuova,
    Estraneo,
    Interrotto,
    NonEntra // una riga che la tabella non può avere
};

// Porta la causa, e un testo italiano da mostrare a chi lavora.
class Errore : public std::runtime_error
{
public:
    Errore(Causa quale, const QString &testo);
    Causa causa() const { return m_causa; }
    QString testo() const;

private:
    Causa m_causa;
};

} // namespace ado
