target_sources(
  tarvola_finestre
  PRIVATE app/avvio.cpp
          app/avvio.h
          app/archivi_file.cpp
          app/archivi_file.h
          app/contesto.cpp
          app/contesto.h
          app/finestre.cpp
          app/finestre.h
          app/fmChiudi.cpp
          app/fmChiudi.h
          app/fmLogin.cpp
          app/fmLogin.h
          app/MDITras.cpp
          app/MDITras.h
          icone/icone.qrc
          )
