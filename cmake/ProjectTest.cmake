# project_add_test(tst_thing SOURCES ... LIBRARIES ... [LABELS ...] [TIMEOUT s] [ENVIRONMENT ...])
#
# A QtTest program, run by ctest under its own name: offscreen, with a fixed locale, and killed when it
# outlives its time; what may take longest starts first. Labels say what it needs: "sim" the camera simulator,
# "xvfb" a virtual display.
# A test with the label "sim" gets a network of its own where the system allows it: cameras of tests that run
# side by side would find each other's searches, and take each other's addresses.
#
# Under AddressSanitizer new_delete_type_mismatch is off, because log4cxx 1.0 deletes its rolling policy by the
# wrong type when the process ends; and leaks are not looked for on a display ("xvfb"), because Qt unloads its
# platform plugin before they can be told from the plugin's own.
function(project_add_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBRARIES;LABELS;ENVIRONMENT" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    if(NOT ARG_SOURCES)
        set(ARG_SOURCES ${name}.cpp)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES
        AUTOMOC ON
        RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests
    )
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} Qt5::Test Project::Options)
    target_compile_definitions(${name} PRIVATE PROJECT_BIN_DIR="${PROJECT_BINARY_DIR}/bin")
    if("sim" IN_LIST ARG_LABELS)
        add_test(NAME ${name} COMMAND own-network $<TARGET_FILE:${name}>)
    else()
        add_test(NAME ${name} COMMAND ${name})
    endif()
    set(_asan new_delete_type_mismatch=0)
    if("xvfb" IN_LIST ARG_LABELS)
        string(APPEND _asan ":detect_leaks=0")
    endif()
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${ARG_TIMEOUT}
        COST ${ARG_TIMEOUT}
        LABELS "${ARG_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0;UBSAN_OPTIONS=print_stacktrace=1;ASAN_OPTIONS=${_asan};${ARG_ENVIRONMENT}"
    )
endfunction()

# project_add_locale_run(tst_thing): runs a test a second time, as "tst_thing_turkish". Letters have another order
# there, i has another upper case, and numbers a comma. The locale is built from its source, which the Debian
# package locales brings; without it there is no second run.
set(PROJECT_LOCALE_DIR ${PROJECT_BINARY_DIR}/tests/locale)
find_program(LOCALEDEF localedef)
find_file(LOCALE_SOURCE tr_TR PATHS /usr/share/i18n/locales NO_DEFAULT_PATH)
if(LOCALEDEF AND LOCALE_SOURCE)
    add_custom_command(OUTPUT ${PROJECT_LOCALE_DIR}/tr_TR.UTF-8/LC_COLLATE
        COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_LOCALE_DIR}
        COMMAND ${LOCALEDEF} -i ${LOCALE_SOURCE} -f UTF-8 ${PROJECT_LOCALE_DIR}/tr_TR.UTF-8
        VERBATIM
    )
    add_custom_target(test_locale DEPENDS ${PROJECT_LOCALE_DIR}/tr_TR.UTF-8/LC_COLLATE)
else()
    message(STATUS "No tests in a second locale: localedef or its source of tr_TR is missing")
endif()

function(project_add_locale_run name)
    if(NOT TARGET test_locale)
        return()
    endif()
    add_dependencies(${name} test_locale)
    add_test(NAME ${name}_turkish COMMAND ${name})
    get_test_property(${name} ENVIRONMENT _environment)
    list(REMOVE_ITEM _environment LC_ALL=C.UTF-8)
    get_test_property(${name} TIMEOUT _timeout)
    set_tests_properties(${name}_turkish PROPERTIES
        TIMEOUT ${_timeout}
        COST ${_timeout}
        ENVIRONMENT "${_environment};LC_ALL=tr_TR.UTF-8;LOCPATH=${PROJECT_LOCALE_DIR}"
    )
endfunction()
