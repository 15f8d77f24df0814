"""What pyproject.toml cannot say: the wheel holds libraries of this platform, for any Python 3."""

from setuptools import setup
from setuptools.dist import Distribution
from wheel.bdist_wheel import bdist_wheel


class WithLibraries(Distribution):
    def has_ext_modules(self) -> bool:
        return True


class AnyPython(bdist_wheel):
    def get_tag(self) -> tuple[str, str, str]:
        return ("py3", "none", super().get_tag()[2])


setup(distclass=WithLibraries, cmdclass={"bdist_wheel": AnyPython})
