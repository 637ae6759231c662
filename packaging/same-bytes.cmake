# Run by cpack before it packs: every file gets the date of the release, so that the same
# sources give the same packages whenever they are built.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  return()
endif()
execute_process(
  COMMAND find ${CPACK_TEMPORARY_INSTALL_DIRECTORY} -exec touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} +
  COMMAND_ERROR_IS_FATAL ANY)
