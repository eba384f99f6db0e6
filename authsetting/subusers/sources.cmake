set(subusers_SOURCES)
