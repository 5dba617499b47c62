#include "app/Application.h"

int main(int argc, char** argv)
{
    quillfern::Application application(argc, argv);
    return application.exec();
}
