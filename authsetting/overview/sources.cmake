set(overview_SOURCES)
