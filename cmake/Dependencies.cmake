# Every library that is called rather than written. The Debian package of each stands in
# packaging/install-packages.
find_package(PkgConfig REQUIRED)
find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Xml Svg X11Extras LinguistTools)
find_package(KF5WindowSystem 5.101 REQUIRED)
find_package(Threads REQUIRED)
pkg_check_modules(ARAVIS REQUIRED IMPORTED_TARGET aravis-0.8)
pkg_check_modules(GIO REQUIRED IMPORTED_TARGET gio-2.0 gio-unix-2.0)
pkg_check_modules(LOG4CXX REQUIRED IMPORTED_TARGET liblog4cxx)
pkg_check_modules(LIBXML2 REQUIRED IMPORTED_TARGET libxml-2.0)
pkg_check_modules(LIBZIP REQUIRED IMPORTED_TARGET libzip)

if(PROJECT_BUILD_TESTS)
    find_package(Qt5 5.15 REQUIRED COMPONENTS Test)
    pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
endif()
if(PROJECT_BUILD_BENCH)
    find_package(benchmark REQUIRED)
endif()
