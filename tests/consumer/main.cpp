// Draws two lines that cross and counts what the net makes of them.
#include <tvobase.h>

#include <cstdio>

class CMyNet : public CGridDataBase {
public:
    int IsIndependentNetNode(CGjNetNode* node) override {
        CArray<CGouJianEx*> lines;
        return GetConnectedNetLine(node, lines) == 0;
    }
};

int main() {
    CMyNet net;
    net.AddNetLine(CFPoint(0, 0, 0), CFPoint(6000, 0, 0), 0, 0);
    net.AddNetLine(CFPoint(3000, -1000, 0), CFPoint(3000, 1000, 0), 0, 0);
    std::printf("%d nodes, %d lines\n", net.GetGouJianCount(GJLX_NET_NODE), net.GetGouJianCount(GJLX_NET_LINE));
    return net.GetGouJianCount(GJLX_NET_LINE) == 4 ? 0 : 1;
}
