target_sources(
  tarvola_dati
  PRIVATE platform/ado.cpp platform/ado.h
          platform/alberi.cpp platform/alberi.h
          platform/flusso.cpp platform/flusso.h
          platform/italiano.cpp platform/italiano.h
          platform/jet_pagine.cpp platform/jet_pagine.h
          platform/jet_righe.cpp platform/jet_righe.h
          platform/jet_tabelle.cpp platform/jet_tabelle.h
          platform/jet_testo.cpp platform/jet_testo.h
          platform/jro.cpp platform/jro.h
          platform/pagine.cpp platform/pagine.h
          platform/parole.cpp platform/parole.h
          platform/presa.cpp platform/presa.h
          platform/provvisorio.cpp platform/provvisorio.h
          platform/recordset.cpp platform/recordset.h
          platform/registro.cpp platform/registro.h
          platform/riga.cpp
          platform/salvataggio.cpp platform/salvataggio.h
          platform/salvate.cpp platform/salvate.h
          platform/shell.cpp platform/shell.h
          platform/sistema.cpp platform/sistema.h
          platform/transazione.cpp)
