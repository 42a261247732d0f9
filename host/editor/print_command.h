// The editor's command that prints to a PDF file.
#pragma once

class CEditFrame;

/// Asks for paper, part and scale and for a file, and writes the page.
void PrintModel(CEditFrame& frame);
