#pragma once

#include "platform/motore/ado.h"

#include <QList>
#include <QStringList>

// Le righe di ogni atto dell'archivio, nell'ordine in cui gli atti furono scritti, nella forma di
// serie::Atto::righe. In fondo, se ve ne sono, quelle che non appartengono a nessun atto.
QList<QStringList> righeDegliAtti(ado::Connection &connessione);
