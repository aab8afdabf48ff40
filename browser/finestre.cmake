target_sources(
  tarvola_finestre
  PRIVATE browser/altre_tabelle.cpp
          browser/comandi.cpp
          browser/fmTabella.cpp
          browser/fmTabella.h
          browser/fmVisualizza.cpp
          browser/fmVisualizza.h
          browser/menu_tabella.cpp
          browser/modello_tabella.cpp
          browser/modello_tabella.h)
