#pragma once

#include <QString>

#include <optional>

// La tavola delle classi di file registrate: per ogni chiave il suo valore senza nome. I nomi delle
// chiavi si confrontano senza badare alle maiuscole e si dividono con "\".
namespace registro
{

enum class Radice { HKEY_CLASSES_ROOT };

constexpr long ERROR_SUCCESS = 0;
constexpr long ERROR_FILE_NOT_FOUND = 2;
constexpr long ERROR_MORE_DATA = 234;
constexpr unsigned KEY_READ = 0x20019;

// Una chiave aperta.
struct Chiave {
    QString nome;
};

// Apre una chiave in lettura; ERROR_FILE_NOT_FOUND se non c'è.
long RegOpenKeyEx(Radice radice, const QString &nome, unsigned accesso, Chiave &chiave);
// Copia il valore senza nome, chiuso da un NUL, all'inizio della zona data; ERROR_MORE_DATA se non
// ci sta, ERROR_FILE_NOT_FOUND se la chiave non c'è più.
long RegQueryValueEx(const Chiave &chiave, QString &zona);
void RegCloseKey(Chiave &chiave);

// Registra o toglie una chiave. La tavola vale finché il programma gira.
void scrivi(Radice radice, const QString &nome, const QString &valore);
void togli(Radice radice, const QString &nome);

} // namespace registro
