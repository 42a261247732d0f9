// The editor's command that prints, to a printer or to a PDF file.
#pragma once

class CEditFrame;

/// Asks for printer, paper, part and scale, and sends the page there; or asks for a file, and writes it.
void PrintModel(CEditFrame& frame);
