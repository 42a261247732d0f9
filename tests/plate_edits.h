// Random edits of a net with plates.
#pragma once
#include <random>

#include "plate_net.h"

/// Draws numbers; the same on every machine.
class Dice {
public:
    explicit Dice(unsigned seed) : m_rng(seed) {}
    int Pick(int n) { return static_cast<int>(m_rng() % static_cast<unsigned>(n)); }
    float Real(float from, float to) { return from + (to - from) * static_cast<float>(m_rng() >> 8) / 16777216.0f; }

private:
    std::mt19937 m_rng;
};

enum class Ground { Octants, Lattice, Free };  // ends on a lattice and eight directions; ends on a lattice; anywhere

/// Tells random edits in the tongue of the net tests. It reads the net and changes nothing.
class PlateEditor {
public:
    PlateEditor(CTestNet& net, Ground ground, bool arcs, unsigned seed) : m_net(net), m_ground(ground), m_arcs(arcs), m_dice(seed) {}

    Dice& GetDice() { return m_dice; }
    /// One to three edits, to be made in one step.
    std::string Batch() {
        std::string text = One();
        for (int more = m_dice.Pick(6) == 0 ? 1 + m_dice.Pick(2) : 0; more > 0; --more) text += "; " + One();
        return text;
    }
    std::string One() {
        const auto lines = LinesOf(m_net);
        const int what = m_dice.Pick(100);
        if (what < 28 && lines.size() > 4) {
            std::string text = "delete " + Middle(lines);
            for (int more = m_dice.Pick(4) == 0 ? m_dice.Pick(3) : 0; more > 0; --more) text += " & " + Middle(lines);
            return text;
        }
        if (what < 36) return Island();
        if (what < 50 && lines.size() > 2) return Between(lines);
        if (m_arcs && what < 66) return Arc();
        return Line();
    }

private:
    using Lines = std::vector<CGjNetLine*>;

    static std::string Text(float x, float y) {
        char text[64];
        std::snprintf(text, sizeof text, "%.9g,%.9g", static_cast<double>(x), static_cast<double>(y));
        return text;
    }
    static std::string At(int x, int y) { return std::to_string(1000 * x) + "," + std::to_string(1000 * y); }
    std::string Anywhere() {
        if (m_ground != Ground::Free) return At(m_dice.Pick(7), m_dice.Pick(5));
        return Text(m_dice.Real(0, 7000), m_dice.Real(0, 5000));
    }
    std::string Line() {
        if (m_ground != Ground::Octants) return Anywhere() + " - " + Anywhere();
        int x1, y1, dx, dy;
        do {
            x1 = m_dice.Pick(7), y1 = m_dice.Pick(5), dx = m_dice.Pick(7) - x1, dy = m_dice.Pick(5) - y1;
        } while (dx && dy && std::abs(dx) != std::abs(dy));
        return At(x1, y1) + " - " + At(x1 + dx, y1 + dy);
    }
    // A closed ring of its own; where it meets nothing it is an island.
    std::string Island() {
        if (m_ground == Ground::Free) {
            const float x = m_dice.Real(0, 6000), y = m_dice.Real(0, 4000), w = m_dice.Real(150, 900), h = m_dice.Real(150, 900);
            return Text(x, y) + " - " + Text(x + w, y) + ";" + Text(x + w, y) + " - " + Text(x + w, y + h) + ";" + Text(x + w, y + h) +
                   " - " + Text(x, y + h) + ";" + Text(x, y + h) + " - " + Text(x, y);
        }
        const int x = m_dice.Pick(6), y = m_dice.Pick(4);
        if (m_dice.Pick(3) == 0)
            return At(x, y) + " - " + At(x + 1, y) + ";" + At(x + 1, y) + " - " + At(x, y + 1) + ";" + At(x, y + 1) + " - " + At(x, y);
        return At(x, y) + " - " + At(x + 1, y) + ";" + At(x + 1, y) + " - " + At(x + 1, y + 1) + ";" + At(x + 1, y + 1) + " - " +
               At(x, y + 1) + ";" + At(x, y + 1) + " - " + At(x, y);
    }
    // A bridge, chord or stub from a node that stands, or from the middle of a line.
    std::string Between(const Lines& lines) {
        if (m_ground == Ground::Octants) return Line();
        const auto end = [&] {
            const CGjNetLine* l = lines[Index(lines)];
            const int where = m_dice.Pick(4);
            if (where == 0) return Text(l->m_fMidX, l->m_fMidY);
            return where == 1 ? Text(l->m_fEndX, l->m_fEndY) : Text(l->m_fStartX, l->m_fStartY);
        };
        const std::string from = end();
        return from + " - " + (m_dice.Pick(4) ? end() : Anywhere());
    }
    std::string Arc() {
        if (m_ground == Ground::Free)
            return "arc " + Anywhere() + " " + std::to_string(300 + m_dice.Pick(3000)) + " " + std::to_string(m_dice.Pick(360)) + " " +
                   std::to_string(m_dice.Pick(360));
        const int start = 90 * m_dice.Pick(4);
        return "arc " + Anywhere() + " " + std::to_string(1000 * (1 + m_dice.Pick(2))) + " " + std::to_string(start) + " " +
               std::to_string(start + 90 * (1 + m_dice.Pick(3)));
    }
    std::size_t Index(const Lines& lines) { return static_cast<std::size_t>(m_dice.Pick(static_cast<int>(lines.size()))); }
    std::string Middle(const Lines& lines) {
        const CGjNetLine* l = lines[Index(lines)];
        return Text(l->m_fMidX, l->m_fMidY);
    }

    CTestNet& m_net;
    Ground m_ground;
    bool m_arcs;
    Dice m_dice;
};
