# The build tree has the shape of the installation, so a program finds its libraries, helpers and
# read-only files by the same relative paths in both.
include(GNUInstallDirs)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/archive)
set(PROJECT_LIBEXEC_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/libexec)
# The read-only configuration: rcc/, plugins/, log4qt/, Translation/ below it.
set(PROJECT_SHARE_NAME lumo-import-export-features)
set(PROJECT_SHARE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/share/${PROJECT_SHARE_NAME})
set(PROJECT_SHARE_INSTALL_DIRECTORY ${CMAKE_INSTALL_DATADIR}/${PROJECT_SHARE_NAME})

# Programs and libraries find each other after the tree was moved: bin/ and libexec/ look into ../lib.
set(CMAKE_INSTALL_LIBDIR lib)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../lib;$ORIGIN")
# The same paths while building: CMake pads others with ':', an empty entry, which is the working directory.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
