# Installs headers, the library, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS PlumvaleBaseCore EXPORT PlumvaleBaseCoreTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/PlumvaleBaseCore"
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY "${PLUMVALE_GENERATED_INCLUDE_DIR}/PlumvaleBaseCore"
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(PLUMVALE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/PlumvaleBaseCore)
install(EXPORT PlumvaleBaseCoreTargets NAMESPACE PlumvaleBaseCore::
        DESTINATION ${PLUMVALE_CMAKE_DIR})

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/PlumvaleBaseCoreConfig.cmake.in"
                              "${PROJECT_BINARY_DIR}/PlumvaleBaseCoreConfig.cmake"
                              INSTALL_DESTINATION ${PLUMVALE_CMAKE_DIR})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/PlumvaleBaseCoreConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/PlumvaleBaseCoreConfig.cmake"
              "${PROJECT_BINARY_DIR}/PlumvaleBaseCoreConfigVersion.cmake"
        DESTINATION ${PLUMVALE_CMAKE_DIR})

set(PLUMVALE_PC_REQUIRES "${PLUMVALE_QT}Core")
if(NOT BUILD_SHARED_LIBS)
    string(APPEND PLUMVALE_PC_REQUIRES " tbb")
endif()
configure_file("${PROJECT_SOURCE_DIR}/cmake/PlumvaleBaseCore.pc.in"
               "${PROJECT_BINARY_DIR}/PlumvaleBaseCore.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/PlumvaleBaseCore.pc"
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
