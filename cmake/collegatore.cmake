# Dove c'è mold, collegare un programma di prova costa un decimo. Quello che si distribuisce resta al
# collegatore di sempre.
if(CMAKE_BUILD_TYPE STREQUAL Debug)
  include(CheckLinkerFlag)
  check_linker_flag(CXX -fuse-ld=mold TARVOLA_HA_MOLD)
  if(TARVOLA_HA_MOLD)
    add_link_options(-fuse-ld=mold)
  endif()
endif()
