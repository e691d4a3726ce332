# The languages of the texts that people see. The sources are German; every other language has a file for Qt Linguist.
include_guard(GLOBAL)

set(NY_LANGUAGES en)
set(NY_TRANSLATIONS_FOLDER "${CMAKE_SOURCE_DIR}/resources/translations")
# How a translation file is made from the sources; the test that finds a stale file goes the same way.
set(NY_LUPDATE_SOURCES "${CMAKE_SOURCE_DIR}/libs" "${CMAKE_SOURCE_DIR}/service" "${CMAKE_SOURCE_DIR}/albuma")
set(NY_LUPDATE_OPTIONS -silent -extensions cpp,h -locations none -no-obsolete -source-language de_DE)

# ny_add_translations(<target>): embeds the translations into a library as :/velmora/translations/velmora_<language>.qm and makes
# the target update-translations, which brings the files up to date with the sources.
function(ny_add_translations TARGET)
    set(files ${NY_LANGUAGES})
    list(TRANSFORM files PREPEND "${NY_TRANSLATIONS_FOLDER}/velmora_")
    list(TRANSFORM files APPEND ".ts")
    foreach(language file IN ZIP_LISTS NY_LANGUAGES files)
        # Qt's function would have the build make the file, over what update-translations has put there.
        if(NOT EXISTS "${file}")
            file(WRITE "${file}" "<!DOCTYPE TS>\n<TS version=\"2.1\" language=\"${language}\" sourcelanguage=\"de_DE\"/>\n")
        endif()
    endforeach()
    # A text that is not translated yet stays German.
    qt_add_lrelease(${TARGET} TS_FILES ${files} QM_FILES_OUTPUT_VARIABLE compiled OPTIONS -silent -nounfinished)
    qt_add_resources(${TARGET} translations
        PREFIX /velmora/translations
        BASE "${CMAKE_CURRENT_BINARY_DIR}"
        FILES ${compiled})

    set(commands "")
    foreach(language file IN ZIP_LISTS NY_LANGUAGES files)
        list(APPEND commands
            COMMAND Qt6::lupdate ${NY_LUPDATE_SOURCES} ${NY_LUPDATE_OPTIONS} -target-language ${language} -ts "${file}")
    endforeach()
    add_custom_target(update-translations ${commands} VERBATIM COMMENT "Bringing the translations up to date with the sources")
endfunction()
