"""One module a sample, and what they share."""
