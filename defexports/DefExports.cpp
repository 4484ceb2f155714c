// CDefExports: keeps the exports section of a module-definition file up to date.
