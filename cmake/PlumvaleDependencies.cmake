# Finds Qt (major version chosen by PLUMVALE_QT_MAJOR) and oneTBB.
if(NOT PLUMVALE_QT_MAJOR STREQUAL "6" AND NOT PLUMVALE_QT_MAJOR STREQUAL "5")
    message(FATAL_ERROR "PLUMVALE_QT_MAJOR must be 6 or 5, not '${PLUMVALE_QT_MAJOR}'")
endif()

# Components every consumer of the installed package needs as well.
set(PLUMVALE_QT_COMPONENTS Core Gui Widgets)

if(PLUMVALE_QT_MAJOR STREQUAL "6")
    find_package(Qt6 6.4 REQUIRED COMPONENTS ${PLUMVALE_QT_COMPONENTS})
    # Build-time only: lrelease compiles the library's message catalogues.
    find_package(Qt6 6.4 REQUIRED COMPONENTS LinguistTools)
    set(PLUMVALE_QT_MIN_VERSION 6.4)
else()
    find_package(Qt5 5.15 REQUIRED COMPONENTS ${PLUMVALE_QT_COMPONENTS})
    find_package(Qt5 5.15 REQUIRED COMPONENTS LinguistTools)
    set(PLUMVALE_QT_MIN_VERSION 5.15)
endif()
set(PLUMVALE_QT Qt${PLUMVALE_QT_MAJOR})

find_package(TBB 2021 CONFIG REQUIRED)
