# Install and export.
