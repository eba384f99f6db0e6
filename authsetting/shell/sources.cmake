set(shell_SOURCES)
