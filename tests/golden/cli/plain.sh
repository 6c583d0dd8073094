# An empty folder, and a text that formatting changes.
ugly='if a\nx=1;\nend\n'
tidy='if a\n    x=1;\nend\n'
