# Run by CPack on the staged tree before it becomes the package: CPack makes the tree's top
# directories under the packager's umask, and a package's directories are 0755.
file(CHMOD_RECURSE ${CPACK_TEMPORARY_INSTALL_DIRECTORY}
     DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                           WORLD_READ WORLD_EXECUTE)
