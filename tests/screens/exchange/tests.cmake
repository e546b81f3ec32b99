# The screen tests of exchange.
