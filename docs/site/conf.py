"""How Sphinx makes the site; build.py fills the folder that it reads."""

project = "vqmath63"
html_title = "vqmath63"
extensions = ["myst_parser", "sphinx_inline_tabs", "sphinx_copybutton"]
html_theme = "furo"
html_static_path = ["_static"]
html_css_files = ["site.css"]
html_js_files = ["find.js"]
html_show_copyright = False
html_show_search_summary = False  # would fetch pages, which no browser does from disk
smartquotes = False
html_show_sourcelink = False
html_copy_source = False
# Links were made to fit the site beforehand.
myst_all_links_external = True
suppress_warnings = ["myst.header", "toc.not_readable"]
copybutton_prompt_text = "$ "
pygments_style = "default"
pygments_dark_style = "github-dark"
# Commands are read and copied as they stand.
highlight_language = "none"
