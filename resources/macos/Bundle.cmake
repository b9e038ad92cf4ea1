# Makes the application bundle: its property list, its icon, Qt, and a disk image of it.
set(folder ${PROJECT_SOURCE_DIR}/resources/macos)
set(drawing ${PROJECT_SOURCE_DIR}/resources/icons/com.orvane.Parklet.svg)
set(iconSet ${CMAKE_CURRENT_BINARY_DIR}/AppIcon.iconset)
set(icon ${CMAKE_CURRENT_BINARY_DIR}/AppIcon.icns)

# The icon is the same drawing as on Linux, at every size that macOS asks for.
add_executable(render-icon ${PROJECT_SOURCE_DIR}/resources/RenderIcon.cpp)
target_link_libraries(render-icon PRIVATE Qt6::Svg)
set(renderings "")
foreach(points 16 32 128 256 512)
  math(EXPR double "2 * ${points}")
  list(APPEND renderings
    COMMAND render-icon ${drawing} ${points} ${iconSet}/icon_${points}x${points}.png
    COMMAND render-icon ${drawing} ${double} ${iconSet}/icon_${points}x${points}@2x.png)
endforeach()
add_custom_command(OUTPUT ${icon}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${iconSet}
  ${renderings}
  COMMAND iconutil --convert icns --output ${icon} ${iconSet}
  DEPENDS render-icon ${drawing}
  VERBATIM)

# If Qt was built for a newer system, the program needs that system too.
set(PARKLET_MINIMUM_SYSTEM ${CMAKE_OSX_DEPLOYMENT_TARGET})
get_target_property(qtCore Qt6::Core LOCATION)
execute_process(COMMAND ${CMAKE_OTOOL} -l ${qtCore} OUTPUT_VARIABLE loadCommands COMMAND_ERROR_IS_FATAL ANY)
if(loadCommands MATCHES "minos ([0-9.]+)" AND CMAKE_MATCH_1 VERSION_GREATER PARKLET_MINIMUM_SYSTEM)
  set(PARKLET_MINIMUM_SYSTEM ${CMAKE_MATCH_1})
endif()

target_sources(parklet PRIVATE ${icon})
set_source_files_properties(${icon} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
# The translated texts of the property list. The program's other texts are in its resources.
file(GLOB localizations CONFIGURE_DEPENDS RELATIVE ${folder} ${folder}/*.lproj/InfoPlist.strings)
foreach(localization ${localizations})
  get_filename_component(language ${localization} DIRECTORY)
  target_sources(parklet PRIVATE ${folder}/${localization})
  set_source_files_properties(${folder}/${localization} PROPERTIES MACOSX_PACKAGE_LOCATION Resources/${language})
endforeach()
set_target_properties(parklet PROPERTIES
  MACOSX_BUNDLE ON
  MACOSX_BUNDLE_INFO_PLIST ${folder}/Info.plist.in
  OUTPUT_NAME Parklet)

# Qt's tool macdeployqt copies frameworks and plugins into the bundle and signs it for this machine.
get_target_property(qmake Qt6::qmake IMPORTED_LOCATION)
get_filename_component(qtTools "${qmake}" DIRECTORY)
find_program(MACDEPLOYQT macdeployqt HINTS ${qtTools})
install(TARGETS parklet BUNDLE DESTINATION .)
install(CODE "
  execute_process(
    COMMAND \"${MACDEPLOYQT}\" \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/Parklet.app\" -codesign=-
    COMMAND_ERROR_IS_FATAL ANY)")

set(CPACK_GENERATOR DragNDrop)
set(CPACK_PACKAGE_NAME Parklet)
set(CPACK_PACKAGE_VENDOR Orvane)
set(CPACK_PACKAGE_FILE_NAME Parklet-${PROJECT_VERSION})
set(CPACK_DMG_VOLUME_NAME Parklet)
include(CPack)
